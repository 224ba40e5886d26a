#include "StatusLine.h"

#include "MachineRoot.h"
#include "StoredField.h"

namespace ventaro {

void StatusLine::report(const std::optional<std::string>& message, bool isError) {
    std::optional<std::string> shown;
    if (message) {
        shown = machineRoot_.withoutFolder(*message);
    }
    store(this, message_, std::move(shown), &StatusLine::messageChanged);
    store(this, isError_, isError, &StatusLine::isErrorChanged);
}

void StatusLine::dismiss() { store(this, message_, std::nullopt, &StatusLine::messageChanged); }

} // namespace ventaro
