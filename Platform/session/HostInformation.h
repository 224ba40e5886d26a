#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ventaro {

/// What the machine tells about itself. Any thread.
class HostInformation {
public:
    virtual ~HostInformation() = default;

    /// What the program at `path`, a path of the machine, prints to its standard output until it
    /// ends, however it ends. No value if it cannot be started. Blocks without a limit, but for
    /// `endPrograms`.
    virtual std::optional<std::string> runProgram(const std::string& path,
                                                  const std::vector<std::string>& arguments) = 0;
    /// Ends the programs that are running and starts none any more.
    virtual void endPrograms() = 0;
    /// The bytes of a named kernel value, as `sysctlbyname` gives them; no value for an unknown
    /// name.
    virtual std::optional<std::vector<std::uint8_t>> kernelValue(std::string_view name) = 0;
    /// The operating system with its version, for people.
    virtual std::string operatingSystemVersion() = 0;
};

} // namespace ventaro
