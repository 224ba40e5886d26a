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
        return answerToPing();
    case HelperAction::setFanRPM:
        return setFanRPM(request);
    case HelperAction::resetFanAuto:
        return resetFanAuto(request);
    case HelperAction::resetAllAuto:
        return resetAllAuto();
    }
    return refusal("Unbekannte Aktion.");
}

HelperResponse RequestHandler::answerToPing() const {
    HelperResponse response = done("VentaroHelper ist bereit.");
    response.guard = watch_.cause();
    response.build = VENTARO_VERSION;
    response.started =
        std::chrono::floor<std::chrono::milliseconds>(started_).time_since_epoch().count();
    return response;
}

int RequestHandler::fanCount() {
    if (!knownFanCount_ && smc_.readDouble("FNum").value_or(0) > 0) {
        knownFanCount_ = smc_.fanCount();
    }
    return knownFanCount_ ? *knownFanCount_ : smc_.steerableFanCount();
}

std::variant<RequestHandler::Fan, HelperResponse>
RequestHandler::checkedFan(const HelperRequest& request) {
    if (!request.fanIndex) {
        return refusal("Für " + quotedAction(request) + " fehlt die Lüfternummer.");
    }
    const int count = fanCount();
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
    const FanRange range = smc_.readFanRange(index);
    if (!isTrustworthy(range)) {
        return refusal("Das SMC nennt für " + name + " eine Höchstdrehzahl von " +
                       formatRounded(range.maximum) + " RPM. Darauf ist kein Verlass.");
    }
    if (const auto refused = watch_.refusal(*request.rpm, range)) {
        HelperResponse response = refusal(*refused);
        response.guard = watch_.cause();
        return response;
    }
    const auto wasForced = smc_.readFanForced(index);
    if (!wasForced) {
        return refusal("Ob " + name +
                       " auf macOS-Automatik ist, kann nicht gelesen werden. Nichts geändert.");
    }
    watch_.willForce(index, range);
    try {
        smc_.setFanTargetRPM(index, *request.rpm, range);
    } catch (const SMCError&) {
        if (!*wasForced) {
            release_.release(std::span(&std::get<Fan>(checked), 1)); // at no speed of long ago
        }
        throw;
    }
    release_.forget(index);
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
    const Fan& fan = std::get<Fan>(checked);
    if (const auto failure = release_.release(std::span(&fan, 1))) {
        return notReleased(*failure);
    }
    log_.change("fan " + std::to_string(fan.index) + " back to automatic");
    return done(fan.name + " auf macOS-Automatik.");
}

HelperResponse RequestHandler::notReleased(const std::string& failure) const {
    return refusal(release_.due() ? failure + " Der Helper versucht es weiter." : failure);
}

HelperResponse RequestHandler::resetAllAuto() {
    if (const auto failure = release_.release(FanRelease::fans(fanCount()))) {
        return notReleased(*failure);
    }
    log_.change("all fans back to automatic");
    return done("Alle Lüfter auf macOS-Automatik.");
}

} // namespace ventaro
