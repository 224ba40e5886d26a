#include "HelperIPC.h"

#include "JsonObject.h"

#include <array>
#include <utility>

namespace ventaro {

namespace {

constexpr std::array<std::pair<HelperAction, std::string_view>, 4> actions{{
    {HelperAction::ping, "ping"},
    {HelperAction::setFanRPM, "setFanRPM"},
    {HelperAction::resetFanAuto, "resetFanAuto"},
    {HelperAction::resetAllAuto, "resetAllAuto"},
}};

} // namespace

std::string_view rawValue(HelperAction action) {
    for (const auto& [candidate, raw] : actions) {
        if (candidate == action) {
            return raw;
        }
    }
    return {};
}

std::optional<HelperAction> helperActionFromRawValue(std::string_view raw) {
    for (const auto& [action, candidate] : actions) {
        if (candidate == raw) {
            return action;
        }
    }
    return std::nullopt;
}

std::string encodeJson(const HelperRequest& request) {
    JsonObjectWriter object;
    object.string("action", rawValue(request.action));
    if (request.fanIndex) {
        object.integer("fanIndex", *request.fanIndex);
    }
    if (request.rpm) {
        object.number("rpm", *request.rpm);
    }
    return object.text();
}

HelperRequest decodeHelperRequest(std::string_view json) {
    const JsonObjectReader object(json);
    const auto action = helperActionFromRawValue(object.string("action"));
    if (!action) {
        throw DecodingError(DecodingError::Reason::unknownValue, "action");
    }
    HelperRequest request{*action, std::nullopt, std::nullopt};
    if (object.has("fanIndex")) {
        request.fanIndex = object.integer("fanIndex");
    }
    if (object.has("rpm")) {
        request.rpm = object.number("rpm");
    }
    return request;
}

std::string_view rawValue(GuardCause cause) { return cause == GuardCause::hot ? "hot" : "blind"; }

std::string encodeJson(const HelperResponse& response) {
    JsonObjectWriter object;
    object.boolean("success", response.success)
        .string("message", response.message)
        .integer("version", response.version);
    if (response.guard) {
        object.string("guard", rawValue(*response.guard));
    }
    if (response.build) {
        object.string("build", *response.build);
    }
    if (response.started) {
        object.integer("started", *response.started);
    }
    return object.text();
}

HelperResponse decodeHelperResponse(std::string_view json) {
    const JsonObjectReader object(json);
    HelperResponse response{object.boolean("success"), object.string("message"),
                            object.integer("version")};
    if (object.has("guard")) {
        const bool isHot = object.string("guard") == rawValue(GuardCause::hot);
        response.guard = isHot ? GuardCause::hot : GuardCause::blind;
    }
    if (object.has("build")) {
        response.build = object.string("build");
    }
    if (object.has("started")) {
        response.started = object.integer("started");
    }
    return response;
}

bool isUsableHelper(const HelperResponse& pingResponse) {
    return pingResponse.success && pingResponse.version == HelperConstants::protocolVersion;
}

} // namespace ventaro
