#pragma once

#include "Commands.h"

#include <chrono>

namespace ventaro {

struct WatchOptions {
    std::chrono::milliseconds interval{1000};
    int count = 0; ///< looks before it ends; 0: until Ctrl-C
    bool json = false;
    std::string hint; ///< advice below the live view
};

/// Shows the machine live: in place on a terminal, otherwise a line (with `json` an object) per
/// look. False if the last look failed. Throws what `Commands::requireSmc` throws if the SMC cannot
/// be read at the start.
bool watch(Commands& commands, MachineKind machineKind, const WatchOptions& options,
           std::ostream& out);

} // namespace ventaro
