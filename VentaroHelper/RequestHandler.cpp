#include "RequestHandler.h"

#include "NumberFormat.h"

#include <cmath>

namespace ventaro {

namespace {

HelperResponse done(std::string sentence) {
    return {true, std::move(sentence), HelperConstants::protocolVersion};
}

std::string quotedAction(const HelperRequest& request) {
    return "„" + std::string(rawValue(request.action)) + "“";
}

} // namespace

HelperResponse refusal(std::string sentence) {
    return {false, std::move(sentence), HelperConstants::protocolVersion};
}

HelperResponse RequestHandler::handle(const HelperRequest& request) {
    try {
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
    } catch (const SMCError& error) {
        log_.error(std::string(rawValue(request.action)) + " failed: " + error.errorDescription());
        return refusal(error.errorDescription());
    }
    return refusal("Unbekannte Aktion.");
}

std::variant<int, HelperResponse> RequestHandler::checkedFan(const HelperRequest& request) {
    if (!request.fanIndex) {
        return refusal("Für " + quotedAction(request) + " fehlt die Lüfternummer.");
    }
    const int count = smc_.fanCount();
    if (*request.fanIndex < 0 || *request.fanIndex >= count) {
        return refusal("Einen Lüfter mit der Nummer " + std::to_string(*request.fanIndex) +
                       " gibt es nicht. Gemeldete Lüfter: " + std::to_string(count) +
                       ", gezählt ab 0.");
    }
    return static_cast<int>(*request.fanIndex);
}

HelperResponse RequestHandler::setFanRPM(const HelperRequest& request) {
    const auto fan = checkedFan(request);
    if (const auto* refused = std::get_if<HelperResponse>(&fan)) {
        return *refused;
    }
    if (!request.rpm) {
        return refusal("Für " + quotedAction(request) + " fehlt die Drehzahl.");
    }
    if (!std::isfinite(*request.rpm)) {
        return refusal("Die Drehzahl ist keine endliche Zahl.");
    }
    const int index = std::get<int>(fan);
    smc_.setFanTargetRPM(index, *request.rpm);
    const std::string name = SMCService::fanName(index, smc_.fanCount());
    const auto target = smc_.readFanTargetRPM(index);
    // The SMC has the last word on the speed; one that does not say it has still been set.
    const std::string speed =
        target && std::isfinite(*target) ? formatRounded(*target) + " RPM" : "feste Drehzahl";
    log_.change("fan " + std::to_string(index) + " forced, target " + formatFixed(*request.rpm, 1) +
                " RPM requested, set: " + speed);
    return done(name + " auf " + speed + " gesetzt.");
}

HelperResponse RequestHandler::resetFanAuto(const HelperRequest& request) {
    const auto fan = checkedFan(request);
    if (const auto* refused = std::get_if<HelperResponse>(&fan)) {
        return *refused;
    }
    const int index = std::get<int>(fan);
    smc_.resetFanToAutomatic(index);
    log_.change("fan " + std::to_string(index) + " back to automatic");
    return done(SMCService::fanName(index, smc_.fanCount()) + " auf macOS-Automatik.");
}

HelperResponse RequestHandler::resetAllAuto() {
    smc_.resetAllFansToAutomatic();
    log_.change("all fans back to automatic");
    return done("Alle Lüfter auf macOS-Automatik.");
}

} // namespace ventaro
