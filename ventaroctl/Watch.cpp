#include "Watch.h"

#include "JsonObject.h"

namespace ventaro {

namespace {

std::string jsonLine(const Telemetry& telemetry) {
    std::string failure = telemetry.failure;
    try {
        if (failure.empty()) {
            return R"({"fans":)" + toJsonArray(telemetry.fans) + R"(,"sensors":)" +
                   toJsonArray(telemetry.sensors) + "}";
        }
    } catch (const EncodingError& error) {
        failure = error.what();
    }
    return JsonObjectWriter().string("failure", failure).text();
}

} // namespace

bool watch(Commands& commands, MachineKind machineKind, const WatchOptions& options,
           std::ostream& out) {
    commands.requireSmc();
    const bool inPlace = isTerminal() && !options.json;
    if (!inPlace && !options.json) {
        out << watchTitle(machineKind) << std::endl;
    }
    LiveScreen screen(inPlace);
    for (int look = 1;; ++look) {
        const Telemetry telemetry = commands.look();
        if (inPlace) {
            LiveScreen::show(
                watchFrame(telemetry, machineKind, timeOfDay(), options.hint, terminalStyle()));
        } else {
            out << (options.json ? jsonLine(telemetry) : watchLine(telemetry, timeOfDay()))
                << std::endl;
        }
        if (!out || look == options.count || !screen.wait(options.interval)) {
            return telemetry.failure.empty();
        }
    }
}

} // namespace ventaro
