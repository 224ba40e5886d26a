#include "LinuxHostInformation.h"

#include "LinuxProfiler.h"

#include <sys/utsname.h>

#include <sstream>

namespace ventaro {

std::optional<std::string>
LinuxHostInformation::runProgram(const std::string& path,
                                 const std::vector<std::string>& arguments) {
    return path == "/usr/sbin/system_profiler"
               ? std::optional(linuxProfilerDocument(host_, arguments))
               : std::nullopt;
}

std::optional<std::vector<std::uint8_t>> LinuxHostInformation::kernelValue(std::string_view name) {
    std::call_once(isRead_, [this] { kernelValues_ = readLinuxKernelValues(host_); });
    const auto found = kernelValues_.find(name);
    return found == kernelValues_.end() ? std::nullopt : std::optional(found->second);
}

std::string LinuxHostInformation::operatingSystemVersion() {
    constexpr std::string_view head = "PRETTY_NAME=";
    auto release = host_.bytes("/etc/os-release");
    if (!release) {
        release = host_.bytes("/usr/lib/os-release");
    }
    std::istringstream lines(release.value_or(""));
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with(head)) {
            std::string name = line.substr(head.size());
            std::erase_if(name,
                          [](char character) { return character == '"' || character == '\''; });
            return name;
        }
    }
    utsname system{};
    return ::uname(&system) == 0 ? std::string(system.sysname) + " " + system.release : "Linux";
}

} // namespace ventaro
