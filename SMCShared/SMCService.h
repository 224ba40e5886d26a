#pragma once

#include "FanLimits.h"
#include "FanReadBack.h"
#include "IOKit.h"
#include "SMCError.h"
#include "SMCKeyData.h"
#include "TelemetryRecords.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace ventaro {

/// The bytes of one SMC value: at most 32, without an allocation.
class SMCBytes {
public:
    static constexpr std::size_t capacity = sizeof(SMCKeyData_t::bytes);

    SMCBytes() = default;
    SMCBytes(std::initializer_list<std::uint8_t> bytes) : SMCBytes(std::span(bytes)) {}
    /// Bytes beyond the capacity are left out.
    explicit SMCBytes(std::span<const std::uint8_t> bytes);

    std::size_t size() const { return size_; }
    std::uint8_t operator[](std::size_t index) const { return bytes_[index]; }
    operator std::span<const std::uint8_t>() const { return {bytes_.data(), size_}; }

    bool operator==(const SMCBytes&) const = default;

private:
    std::array<std::uint8_t, capacity> bytes_{};
    std::size_t size_ = 0;
};

/// What a read returns: the type's four-character name, trailing blank included, and the bytes.
struct SMCRawValue {
    std::string type;
    SMCBytes bytes;
};

/// The fans as they are shown and as they are held.
struct FanSurvey {
    std::vector<FanReading> fans;
    std::vector<FanReadBack> readBacks; ///< of all that can be steered
};

/// The one object that talks to the System Management Controller. Any thread may call any
/// operation; one lock serialises every kernel exchange and the key-information cache. It is held
/// per key, so operations on several keys may interleave with others.
class SMCService {
public:
    /// The process-wide instance, on the installed platform. Lives to the end of the process.
    static SMCService& shared();

    /// Tries to connect; a failure is left for the next operation. `ioKit` must outlive the
    /// service.
    explicit SMCService(IOKit& ioKit);
    ~SMCService();
    SMCService(const SMCService&) = delete;
    SMCService& operator=(const SMCService&) = delete;

    /// Connects unless connected. Throws SMCError: serviceNotFound, connectionFailed.
    void open();
    /// Disconnects if connected. The key information stays known.
    void close();

    /// Connects if needed and reads one key. Throws SMCError: those of `open`, keyNotFound,
    /// readFailed.
    SMCRawValue readKeyRaw(std::string_view key);
    /// Connects if needed and writes the first 32 of `bytes`; the size sent is the key's own.
    /// Throws SMCError: those of `open`, keyNotFound, writeFailed.
    void writeKeyRaw(std::string_view key, std::span<const std::uint8_t> bytes);
    /// The key's value as a number; no value on any error or if it does not decode.
    std::optional<double> readDouble(std::string_view key);
    /// Writes `value` in the key's own data type. Throws SMCError: those of `writeKeyRaw`,
    /// unsupportedDataType.
    void writeValue(std::string_view key, double value);

    /// Every catalogued sensor that answers with a plausible value (5 to 125 °C exclusive, 0 to
    /// below 250 W), in catalogue order. Never throws; empty without an SMC.
    std::vector<SensorReading> readSensors();

    /// The number of fans as the SMC reports it; 2 if it does not say.
    int fanCount();
    /// The number of fans that can be steered: that of `fanCount`, but 2 also where the SMC counts
    /// none and yet has a first fan.
    int steerableFanCount();
    /// Every fan, in index order; values that do not read are replaced by the machine's defaults.
    /// Never throws.
    std::vector<FanReading> readFans() { return surveyFans().fans; }
    /// The same, with what is known of who steers them; no more exchanges where each fan has a mode
    /// that reads. Never throws.
    FanSurvey surveyFans();
    /// The speed that the SMC steers the fan to, in RPM; no value if it does not say.
    std::optional<double> readFanTargetRPM(int fanIndex);
    /// Whether the fan is forced, by its mode key or by the force mask. A machine that is known to
    /// have neither forces nothing; no value if the one that it has, or may have, does not read.
    std::optional<bool> readFanForced(int fanIndex);
    /// Whether every fan is known not to be forced.
    bool areFansAutomatic();
    /// The speeds that the fan can be set to; the machine's defaults in place of limits that do not
    /// read or are no numbers.
    FanRange readFanRange(int fanIndex);
    /// Takes the fan out of the automatic regulation and steers it to `rpm`, raised to its minimum
    /// and lowered to its maximum. Throws SMCError; what was written before the failure stays.
    void setFanTargetRPM(int fanIndex, double rpm) {
        setFanTargetRPM(fanIndex, rpm, readFanRange(fanIndex));
    }
    void setFanTargetRPM(int fanIndex, double rpm, const FanRange& range);
    /// Gives one fan back to the automatic regulation, also one whose mode does not read. Throws
    /// SMCError.
    void resetFanToAutomatic(int fanIndex);
    /// Gives every fan back, also when some fail. Throws the last failing fan's SMCError.
    void resetAllFansToAutomatic();

    /// The German display name of a fan on a machine with `fanCount` fans.
    static std::string fanName(int fanIndex, int fanCount);

    /// The first four bytes of `key` as a big-endian code; a shorter key is not padded.
    static std::uint32_t fourCharCode(std::string_view key);
    /// The four bytes of `code`, most significant first, each as the Unicode scalar of its value.
    static std::string fourCharString(std::uint32_t code);
    /// No value for an unknown type or too few bytes.
    static std::optional<double> decodeValue(std::string_view type,
                                             std::span<const std::uint8_t> bytes);
    /// Throws SMCError::unsupportedDataType for a type that is not written, and for a value that is
    /// not finite or that the conversion to the type cannot take.
    static SMCBytes encodeValue(std::string_view type, double value);

private:
    struct CallResult {
        KernelReturn kernelReturn;
        SMCKeyData_t output;
        bool succeeded() const { return kernelReturn == KernelCode::success && output.result == 0; }
    };

    enum class KeyPresence { present, absent, unknown };
    struct KeyLookUp {
        KeyPresence presence;
        SMCKeyData_keyInfo_t info;
    };

    CallResult callLocked(const SMCKeyData_t& input);
    KeyLookUp lookUpLocked(std::uint32_t code);
    SMCKeyData_keyInfo_t getKeyInfoLocked(std::uint32_t code, std::string_view keyName);
    SMCKeyData_t valueRequestLocked(std::string_view key, std::uint8_t command);
    /// Whether the machine has the key. Throws SMCError if that cannot be found out.
    bool has(std::string_view key);
    /// By the mode that was just read, or else by the force mask.
    FanHold holdOf(int fanIndex, std::optional<double> mode);
    /// No value on a machine without the mask. Throws SMCError if it does not read.
    std::optional<std::uint16_t> readForceMask();

    IOKit& ioKit_;
    IOConnection connection_ = 0; ///< guarded by `lock_`, like the cache and every kernel call
    std::mutex lock_;
    std::unordered_map<std::uint32_t, SMCKeyData_keyInfo_t> keyInfoCache_;
};

} // namespace ventaro
