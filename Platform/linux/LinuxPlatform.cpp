#include "LinuxPlatform.h"

namespace ventaro {

namespace {

/// A host on which no IOKit service is registered.
class NoIOKit final : public IOKit {
public:
    IOServiceMatch serviceMatching(std::string_view className) override { return {className}; }
    IOObject serviceGetMatchingService(const IOServiceMatch& /*matching*/) override { return 0; }
    KernelReturn serviceOpen(IOObject /*service*/, std::uint32_t /*type*/,
                             IOConnection& /*connection*/) override {
        return KernelCode::noDevice;
    }
    KernelReturn objectRelease(IOObject /*object*/) override { return KernelCode::badArgument; }
    KernelReturn serviceClose(IOConnection /*connection*/) override { return KernelCode::notOpen; }
    KernelReturn connectCallStructMethod(IOConnection /*connection*/, std::uint32_t /*selector*/,
                                         const void* /*input*/, std::size_t /*inputSize*/,
                                         void* /*output*/, std::size_t& /*outputSize*/) override {
        return KernelCode::notOpen;
    }
};

class NoConsoleUser final : public ConsoleUser {
public:
    std::optional<uid_t> current() const override { return std::nullopt; }
};

} // namespace

Platform makeLinuxPlatform() {
    Platform platform;
    platform.ioKit = std::make_unique<NoIOKit>();
    platform.consoleUser = std::make_unique<NoConsoleUser>();
    return platform;
}

} // namespace ventaro
