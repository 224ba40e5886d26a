#include "SingleInstance.h"

#include <algorithm>
#include <stdexcept>
#include <thread>

namespace ventaro {

namespace {

using SteadyClock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr std::string_view reopenLine = "reopen";
constexpr std::string_view nothingLine = "nothing";
constexpr milliseconds pauseBetweenTries(20);

} // namespace

SingleInstance::Role SingleInstance::claim(Request request, milliseconds patience) {
    const auto end = SteadyClock::now() + patience;
    // Once more as long as there is time: the first may not listen yet, or may be about to end.
    for (auto left = patience; left > milliseconds::zero();
         left = std::chrono::ceil<milliseconds>(end - SteadyClock::now())) {
        if (role_.claim()) {
            return Role::first;
        }
        if (role_.files().ask(request == Request::reopen ? reopenLine : nothingLine, left)) {
            return Role::second;
        }
        std::this_thread::sleep_for(std::min(left, pauseBetweenTries));
    }
    throw std::runtime_error("Ventaro is running already, but it does not answer.");
}

void SingleInstance::listen() {
    role_.listen([this](std::string_view line) -> std::optional<std::string> {
        if (line == reopenLine) {
            Q_EMIT reopenRequested();
        } else if (line != nothingLine) {
            return std::nullopt;
        }
        return "ok";
    });
}

} // namespace ventaro
