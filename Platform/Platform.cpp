#include "Platform.h"

#include <stdexcept>

namespace ventaro {

namespace {

std::unique_ptr<Platform>& installed() {
    static auto* platform = new std::unique_ptr<Platform>();
    return *platform;
}

} // namespace

Platform& Platform::current() {
    if (!installed()) {
        throw std::logic_error("no platform has been installed");
    }
    return *installed();
}

Platform& Platform::install(Platform platform) {
    if (installed()) {
        throw std::logic_error("a platform has been installed already");
    }
    installed() = std::make_unique<Platform>(std::move(platform));
    return *installed();
}

} // namespace ventaro
