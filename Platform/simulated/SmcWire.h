#pragma once

#include <cstddef>
#include <cstdint>

namespace ventaro {

/// The stream between a process and the SMC of a simulated MacBook: one request and one answer at a
/// time, each a header and the block it announces, in the host's byte order. The service exists
/// while its socket accepts.
namespace SmcWire {

/// The driver's class name, the only service of the simulated machine.
constexpr const char* serviceName = "AppleSMC";
/// Where the logged-in user's processes reach the SMC: fan keys are read-only.
constexpr const char* userSocketPath = "/var/run/ventaro-simulator/smc-user.sock";
/// Where the machine's root reaches it.
constexpr const char* rootSocketPath = "/var/run/ventaro-simulator/smc-root.sock";
/// The environment variable that hands a process the root socket; any value but
/// `rootAccess` is the user's.
constexpr const char* accessVariable = "VENTARO_MACHINE_ACCESS";
constexpr const char* rootAccess = "root";

/// The longest parameter block, in bytes.
constexpr std::size_t maximumBlockSize = 256;

struct RequestHeader {
    std::uint32_t selector;
    std::uint32_t inputSize;  ///< bytes that follow
    std::uint32_t outputRoom; ///< bytes the caller has room for
};

struct AnswerHeader {
    std::int32_t kernelReturn;
    std::uint32_t outputSize; ///< bytes that follow
};

} // namespace SmcWire

} // namespace ventaro
