#pragma once

#include "ChildProgram.h"
#include "HostInformation.h"
#include "MachineRoot.h"

namespace ventaro {

/// What a simulated machine tells about itself: its programs lie below its root, its kernel values
/// come from its simulator.
class SimulatedHostInformation final : public HostInformation {
public:
    explicit SimulatedHostInformation(MachineRoot root) : root_(std::move(root)) {}

    std::optional<std::string> runProgram(const std::string& path,
                                          const std::vector<std::string>& arguments) override;
    void endPrograms() override { programs_.end(); }
    std::optional<std::vector<std::uint8_t>> kernelValue(std::string_view name) override;
    std::string operatingSystemVersion() override;

private:
    const MachineRoot root_;
    ChildPrograms programs_;
};

} // namespace ventaro
