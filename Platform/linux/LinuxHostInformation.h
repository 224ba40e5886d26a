#pragma once

#include "HostInformation.h"
#include "HostTree.h"
#include "LinuxKernelValues.h"

#include <mutex>

namespace ventaro {

/// What a Linux host tells about itself, in the words of macOS: the system profiler is answered by
/// this process, no other program is there.
class LinuxHostInformation final : public HostInformation {
public:
    explicit LinuxHostInformation(HostTree host = HostTree()) : host_(std::move(host)) {}

    std::optional<std::string> runProgram(const std::string& path,
                                          const std::vector<std::string>& arguments) override;
    void endPrograms() override {}
    std::optional<std::vector<std::uint8_t>> kernelValue(std::string_view name) override;
    std::string operatingSystemVersion() override;

private:
    const HostTree host_;
    std::once_flag isRead_;
    LinuxKernelValues kernelValues_; ///< read at the first question; they do not change
};

} // namespace ventaro
