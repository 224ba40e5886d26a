#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace ventaro {

// The parameter block of the AppleSMC user client: a wire format with the driver, in host byte
// order (little-endian on every Mac with an SMC), naturally aligned.

struct SMCKeyData_vers_t { // NOLINT(readability-identifier-naming): the driver's own name
    std::int8_t major;
    std::int8_t minor;
    std::int8_t build;
    std::int8_t reserved;
    std::uint16_t release;
};

struct SMCKeyData_pLimitData_t { // NOLINT(readability-identifier-naming)
    std::uint16_t version;
    std::uint16_t length;
    std::uint32_t cpuPLimit;
    std::uint32_t gpuPLimit;
    std::uint32_t memPLimit;
};

#pragma pack(push, 1)
/// Size, type and attributes of a key's value. Packed to its nine bytes: in the block the next
/// field begins inside what would be this structure's tail padding.
struct SMCKeyData_keyInfo_t { // NOLINT(readability-identifier-naming)
    std::uint32_t dataSize;   ///< bytes of the value; more than 32 cannot be read whole
    std::uint32_t dataType;   ///< four-character type code
    std::uint8_t dataAttributes;
};
#pragma pack(pop)

struct SMCKeyData_t { // NOLINT(readability-identifier-naming)
    std::uint32_t key;
    SMCKeyData_vers_t vers;
    SMCKeyData_pLimitData_t pLimitData;
    SMCKeyData_keyInfo_t keyInfo;
    std::uint16_t padding;
    std::uint8_t result; ///< of the answer; 0 means success
    std::uint8_t status;
    std::uint8_t data8; ///< command byte of the request
    std::uint32_t data32;
    std::uint8_t bytes[32];
};

static_assert(std::is_trivially_copyable_v<SMCKeyData_t> && sizeof(SMCKeyData_t) == 80);
static_assert(sizeof(SMCKeyData_vers_t) == 6 && offsetof(SMCKeyData_vers_t, release) == 4);
static_assert(sizeof(SMCKeyData_pLimitData_t) == 16 &&
              offsetof(SMCKeyData_pLimitData_t, length) == 2 &&
              offsetof(SMCKeyData_pLimitData_t, cpuPLimit) == 4 &&
              offsetof(SMCKeyData_pLimitData_t, gpuPLimit) == 8 &&
              offsetof(SMCKeyData_pLimitData_t, memPLimit) == 12);
static_assert(sizeof(SMCKeyData_keyInfo_t) == 9 && offsetof(SMCKeyData_keyInfo_t, dataType) == 4 &&
              offsetof(SMCKeyData_keyInfo_t, dataAttributes) == 8);
static_assert(offsetof(SMCKeyData_t, key) == 0 && offsetof(SMCKeyData_t, vers) == 4 &&
              offsetof(SMCKeyData_t, pLimitData) == 12 && offsetof(SMCKeyData_t, keyInfo) == 28 &&
              offsetof(SMCKeyData_t, padding) == 38 && offsetof(SMCKeyData_t, result) == 40 &&
              offsetof(SMCKeyData_t, status) == 41 && offsetof(SMCKeyData_t, data8) == 42 &&
              offsetof(SMCKeyData_t, data32) == 44 && offsetof(SMCKeyData_t, bytes) == 48);

/// Selector of the user client's structure method.
constexpr std::uint32_t KERNEL_INDEX_SMC = 2;
constexpr std::uint8_t SMC_CMD_READ_BYTES = 5;
constexpr std::uint8_t SMC_CMD_WRITE_BYTES = 6;
constexpr std::uint8_t SMC_CMD_READ_INDEX = 8; ///< key by index, in `data32`
constexpr std::uint8_t SMC_CMD_READ_KEYINFO = 9;

} // namespace ventaro
