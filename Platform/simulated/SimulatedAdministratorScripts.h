#pragma once

#include "AdministratorScripts.h"
#include "MachineRoot.h"

#include <string>
#include <string_view>

namespace ventaro {

/// Administrator scripts on a simulated machine: a do-shell-script source is run by the host's
/// shell, as the machine's root and on the machine's paths, once the machine's administrator
/// consents. `VentaroSimulator control consent` says whether he does.
class SimulatedAdministratorScripts final : public AdministratorScripts {
public:
    explicit SimulatedAdministratorScripts(MachineRoot root) : root_(std::move(root)) {}
    std::optional<std::string> unavailableBecause() const override { return std::nullopt; }
    std::unique_ptr<AdministratorScript> compile(const std::string& source) override;

private:
    const MachineRoot root_;
};

/// The shell command of `do shell script "..." with administrator privileges`, its escapes undone;
/// no value for any other source.
std::optional<std::string> shellCommandOf(std::string_view source);

/// `line` with every word that begins with one of the machine's folders moved below its root.
std::string movedBelowRoot(std::string_view line, const MachineRoot& root);

} // namespace ventaro
