#include "RequestHandler.h"

#include "NumberFormat.h"

#include <cmath>

namespace ventaro {

namespace {

HelperResponse done(std::string sentence) {
    return {true, std::move(sentence), HelperConstants::protocolVersion};
}

HelperResponse refusal(std::string sentence) {
    return {false, std::move(sentence), HelperConstants::protocolVersion};
}

std::string quotedAction(const HelperRequest& request) {
    return "„" + std::string(rawValue(request.action)) + "“";
}

} // namespace

HelperResponse RequestHandler::handle(const HelperRequest& request) {
    HelperResponse response{};
    try {
        response = carryOut(request);
    } catch (const std::exception& error) {
        response = refusal(error.what()); // an SMCError's description, unchanged
    }
    if (!response.success) {
        log_.error(std::string(rawValue(request.action)) + " refused: " + response.message);
    }
    return response;
}

HelperResponse RequestHandler::carryOut(const HelperRequest& request) {
    switch (request.action) {
    case HelperAction::ping:
        return done("VentaroHelper ist bereit.");
    case HelperAction::setFanRPM:
        return setFanRPM(request);
    case HelperAction::resetFanAuto:
        return resetFanAuto(request);
    case HelperAction::resetAllAuto:
        return resetAllAuto();
    }
    return refusal("Unbekannte Aktion.");
}

std::variant<RequestHandler::Fan, HelperResponse>
RequestHandler::checkedFan(const HelperRequest& request) {
    if (!request.fanIndex) {
        return refusal("Für " + quotedAction(request) + " fehlt die Lüfternummer.");
    }
    const int count = smc_.fanCount();
    if (*request.fanIndex < 0 || *request.fanIndex >= count) {
        return refusal("Einen Lüfter mit der Nummer " + std::to_string(*request.fanIndex) +
                       " gibt es nicht. Gemeldete Lüfter: " + std::to_string(count) +
                       ", gezählt ab 0.");
    }
    const int index = static_cast<int>(*request.fanIndex);
    return Fan{index, SMCService::fanName(index, count)};
}

HelperResponse RequestHandler::setFanRPM(const HelperRequest& request) {
    const auto checked = checkedFan(request);
    if (const auto* refused = std::get_if<HelperResponse>(&checked)) {
        return *refused;
    }
    if (!request.rpm) {
        return refusal("Für " + quotedAction(request) + " fehlt die Drehzahl.");
    }
    if (!std::isfinite(*request.rpm)) {
        return refusal("Die Drehzahl ist keine endliche Zahl.");
    }
    const auto& [index, name] = std::get<Fan>(checked);
    smc_.setFanTargetRPM(index, *request.rpm);
    const auto target = smc_.readFanTargetRPM(index);
    // The SMC has the last word on the speed; one that does not say it has still been set.
    const std::string speed =
        target && std::isfinite(*target) ? formatRounded(*target) + " RPM" : "feste Drehzahl";
    log_.change("fan " + std::to_string(index) + " forced, requested: " +
                escapedForLog(formatFixed(*request.rpm, 1)) + " RPM, set: " + speed);
    return done(name + " auf " + speed + " gesetzt.");
}

HelperResponse RequestHandler::resetFanAuto(const HelperRequest& request) {
    const auto checked = checkedFan(request);
    if (const auto* refused = std::get_if<HelperResponse>(&checked)) {
        return *refused;
    }
    const auto& [index, name] = std::get<Fan>(checked);
    smc_.resetFanToAutomatic(index);
    if (const auto stillForced = refusalIfStillForced(index, name)) {
        return *stillForced;
    }
    log_.change("fan " + std::to_string(index) + " back to automatic");
    return done(name + " auf macOS-Automatik.");
}

HelperResponse RequestHandler::resetAllAuto() {
    smc_.resetAllFansToAutomatic();
    const int count = smc_.fanCount();
    for (int index = 0; index < count; ++index) {
        const std::string name = SMCService::fanName(index, count);
        if (const auto stillForced = refusalIfStillForced(index, name)) {
            return *stillForced;
        }
    }
    log_.change("all fans back to automatic");
    return done("Alle Lüfter auf macOS-Automatik.");
}

std::optional<HelperResponse> RequestHandler::refusalIfStillForced(int fanIndex,
                                                                   const std::string& name) {
    const auto forced = smc_.readFanForced(fanIndex);
    if (!forced) {
        smc_.readKeyRaw("FNum");
    }
    return forced.value_or(false)
               ? std::optional(refusal(name + " ist weiterhin auf eine feste Drehzahl gestellt."))
               : std::nullopt;
}

} // namespace ventaro
