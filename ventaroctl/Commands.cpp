#include "Commands.h"

#include "FanRange.h"
#include "JsonObject.h"
#include "NumberFormat.h"
#include "SavedSettings.h"
#include "TelemetrySummary.h"

#include <cmath>

namespace ventaro {

namespace {

std::string hex(std::span<const std::uint8_t> bytes) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string text;
    for (const std::uint8_t byte : bytes) {
        text += {digits[byte >> 4U], digits[byte & 0xFU]};
    }
    return text;
}

} // namespace

void Commands::requireMachine() const {
    if (machineKind_ == MachineKind::none) {
        throw CommandError(SMCError::serviceNotFound().errorDescription() +
                           " This machine has no SMC; scripts/run starts a simulated MacBook.");
    }
}

void Commands::requireSmc() {
    requireMachine();
    smc_.open();
    // Without an answer every fan would be made of defaults.
    smc_.readKeyRaw("FNum");
}

void Commands::fans(bool json) {
    requireSmc();
    const auto fans = smc_.readFans();
    out_ << (json ? toJsonArray(fans) + '\n' : fanTable(fans));
}

void Commands::sensors(bool json, const TerminalStyle& style) {
    requireSmc();
    const auto sensors = smc_.readSensors();
    out_ << (json ? toJsonArray(sensors) + '\n' : sensorTable(sensors, style));
}

void Commands::key(const std::string& key, bool json) {
    requireMachine();
    const SMCRawValue raw = smc_.readKeyRaw(key);
    const auto value = SMCService::decodeValue(raw.type, raw.bytes);
    if (json) {
        JsonObjectWriter object;
        object.string("key", key).string("type", raw.type).string("bytes", hex(raw.bytes));
        if (value && std::isfinite(*value)) {
            object.number("value", *value);
        }
        out_ << object.text() << '\n';
        return;
    }
    constexpr int decimals = 4;
    out_ << "Key    " << key << "\nType   " << raw.type << "\nBytes  " << hex(raw.bytes)
         << "\nValue  " << (value ? formatFixed(*value, decimals) : "–") << '\n';
}

HelperResponse Commands::usableHelper() {
    HelperResponse response =
        helper_.sendSocketRequest({HelperAction::ping, std::nullopt, std::nullopt});
    if (!isUsableHelper(response)) {
        throw CommandError("The helper cannot be used: it speaks protocol version " +
                           std::to_string(response.version) + ", this program speaks " +
                           std::to_string(HelperConstants::protocolVersion) +
                           ". It said: " + response.message);
    }
    return response;
}

void Commands::ping(bool json) { print(usableHelper(), json); }

void Commands::set(std::int64_t fanIndex, double rpm, bool json) {
    change({HelperAction::setFanRPM, fanIndex, rpm}, json);
}

void Commands::automatic(std::optional<std::int64_t> fanIndex, bool json) {
    change({fanIndex ? HelperAction::resetFanAuto : HelperAction::resetAllAuto, fanIndex,
            std::nullopt},
           json);
}

void Commands::profile(ControlProfile profile, const DefaultsStore& store, bool json) {
    if (profile == ControlProfile::systemAuto) {
        automatic(std::nullopt, json);
        return;
    }
    requireSmc();
    const SavedSettings settings = loadedSettings(store);
    const auto fans = smc_.readFans();
    if (fans.empty()) {
        throw CommandError("this machine has no fans");
    }
    std::optional<double> fraction = presetFraction(profile);
    if (profile == ControlProfile::smartCurve) {
        const TelemetrySummary summary = summarize(smc_.readSensors());
        const double celsius = temperatureOf(settings.curveSensorSource, summary.cpuTemperature,
                                             summary.gpuTemperature);
        if (!(celsius > 0)) { // 0 stands for a sensor that does not answer
            throw CommandError("the curve's temperature cannot be read");
        }
        constexpr double wholePercent = 100;
        fraction = evaluateCurvePercent(settings.curvePoints, celsius) / wholePercent;
    }
    for (const int index : {0, 1}) {
        const double manual = index == 0 ? settings.manualRPMFan0 : settings.manualRPMFan1;
        if (const FanReading* fan = findFan(fans, index)) {
            set(index, fraction ? mapToRange(*fraction, {fan->minRPM, fan->maxRPM}) : manual, json);
        }
    }
}

void Commands::hardware(const SystemHardwareInspector& inspector, bool json) {
    const auto sections = inspector.loadAllHardwareSections();
    out_ << (json ? toJsonArray(sections) + '\n' : hardwareTable(sections));
}

void Commands::installHelper(bool json) {
    helper_.installPrivilegedDaemon();
    print({true, HelperClient::installedMessage, HelperConstants::protocolVersion}, json);
}

void Commands::uninstallHelper(bool json) {
    helper_.uninstallPrivilegedDaemon();
    print({true, HelperClient::uninstalledMessage, HelperConstants::protocolVersion}, json);
}

void Commands::change(const HelperRequest& request, bool json) {
    usableHelper();
    const HelperResponse response = helper_.sendSocketRequest(request);
    if (!response.success) {
        throw CommandError(response.message);
    }
    print(response, json);
}

void Commands::print(const HelperResponse& response, bool json) {
    out_ << (json ? encodeJson(response) : response.message) << '\n';
}

Telemetry Commands::look() {
    Telemetry telemetry;
    try {
        requireSmc();
        telemetry.fans = smc_.readFans();
        telemetry.sensors = smc_.readSensors();
    } catch (const std::exception& error) {
        telemetry.failure = error.what();
    }
    return telemetry;
}

} // namespace ventaro
