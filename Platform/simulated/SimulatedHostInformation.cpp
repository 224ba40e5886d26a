#include "SimulatedHostInformation.h"

#include "MachineControl.h"

namespace ventaro {

std::optional<std::string>
SimulatedHostInformation::runProgram(const std::string& path,
                                     const std::vector<std::string>& arguments) {
    ChildOutcome outcome =
        programs_.run({root_.resolve(path), arguments, simulatedProcessEnvironment(root_, "user"),
                       ChildProgram::Capture::output});
    return outcome.hasStarted ? std::optional(std::move(outcome.text)) : std::nullopt;
}

std::optional<std::vector<std::uint8_t>>
SimulatedHostInformation::kernelValue(std::string_view name) {
    constexpr std::chrono::seconds patience(2);
    try {
        const MachineCommandResult result =
            sendMachineCommand(root_, {"kernel-value", std::string(name)}, patience);
        if (result.exitCode == 0) {
            return std::vector<std::uint8_t>(result.text.begin(), result.text.end());
        }
    } catch (const std::runtime_error&) {
        // The machine is off.
    }
    return std::nullopt;
}

std::string SimulatedHostInformation::operatingSystemVersion() {
    const auto text = [this](std::string_view name) {
        const auto bytes = kernelValue(name);
        std::string value = bytes ? std::string(bytes->begin(), bytes->end()) : std::string("–");
        return value.substr(0, value.find('\0'));
    };
    return "Version " + text("kern.osproductversion") + " (Build " + text("kern.osversion") + ")";
}

} // namespace ventaro
