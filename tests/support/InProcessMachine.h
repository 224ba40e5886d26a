#pragma once

#include "InProcessIOKit.h"
#include "SMCService.h"

#include <functional>
#include <string>
#include <vector>

namespace ventaro {

/// A simulated machine in this process with an SMC service on it, and a record of what was asked.
struct InProcessMachine {
    explicit InProcessMachine(const SimulatedSmcOptions& options = {}, bool privileged = true)
        : smc(options), ioKit(smc, privileged), service(ioKit) {
        ioKit.onExchange = [this](const SMCKeyData_t& block) { exchanges.push_back(block); };
    }

    /// Each exchange as its command byte and key, writes with their value: "6 F0Md=1".
    std::vector<std::string> taken(bool writesOnly = false) {
        std::vector<std::string> lines;
        for (const SMCKeyData_t& block : exchanges) {
            std::string line =
                std::to_string(block.data8) + " " + SMCService::fourCharString(block.key);
            if (block.data8 == SMC_CMD_WRITE_BYTES) {
                const auto value =
                    SMCService::decodeValue(SMCService::fourCharString(block.keyInfo.dataType),
                                            std::span(block.bytes).first(block.keyInfo.dataSize));
                line += "=" + std::to_string(static_cast<int>(value.value_or(-1)));
            } else if (writesOnly) {
                continue;
            }
            lines.push_back(line);
        }
        exchanges.clear();
        return lines;
    }

    SimulatedSmc smc;
    InProcessIOKit ioKit;
    SMCService service;
    std::vector<SMCKeyData_t> exchanges;
};

/// The error that `action` ends with; no value if it succeeds.
inline std::optional<SMCError> errorOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const SMCError& error) {
        return error;
    }
    return std::nullopt;
}

} // namespace ventaro
