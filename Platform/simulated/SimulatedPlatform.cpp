#include "SimulatedPlatform.h"

#include "SimulatedIOKit.h"
#include "SmcWire.h"

#include <sys/stat.h>

#include <cstdlib>
#include <string_view>

namespace ventaro {

namespace {

class RootFolderOwner final : public ConsoleUser {
public:
    explicit RootFolderOwner(std::filesystem::path folder) : folder_(std::move(folder)) {}
    std::optional<uid_t> current() const override {
        struct stat status {};
        if (::stat(folder_.c_str(), &status) != 0) {
            return std::nullopt;
        }
        return status.st_uid;
    }

private:
    std::filesystem::path folder_;
};

} // namespace

Platform makeSimulatedPlatform(MachineRoot root) {
    const char* access = std::getenv(SmcWire::accessVariable);
    const bool isRoot = access != nullptr && std::string_view(access) == SmcWire::rootAccess;
    Platform platform;
    platform.machineKind = MachineKind::simulated;
    platform.ioKit = std::make_unique<SimulatedIOKit>(
        root.resolve(isRoot ? SmcWire::rootSocketPath : SmcWire::userSocketPath));
    platform.consoleUser = std::make_unique<RootFolderOwner>(root.folder());
    platform.machineRoot = std::move(root);
    return platform;
}

} // namespace ventaro
