#include "HostPlatform.h"
#include "MachineRootChoice.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <stdexcept>

namespace ventaro {
namespace {

TEST(MachineRootPaths, ResolveBelowTheRootAndNowhereElse) {
    const TemporaryFolder folder;
    const MachineRoot root(folder.path());
    EXPECT_EQ(root.resolve("/var/run/x.sock"), folder.path() / "var/run/x.sock");
    EXPECT_EQ(MachineRoot().resolve("/var/run/x.sock"), "/var/run/x.sock");
    for (const char* path : {"", "var/run", "./x", "/var/../../etc", "/.."}) {
        EXPECT_THROW(root.resolve(path), std::invalid_argument) << path;
    }
    // The environment must name a folder.
    writeFile(folder.path() / "file", "");
    EXPECT_FALSE(chooseMachineRoot(nullptr, false).simulated);
    EXPECT_FALSE(chooseMachineRoot("", true).simulated);
    EXPECT_EQ(chooseMachineRoot(folder.path().c_str(), true).simulated->folder(), folder.path());
    for (const std::string& value :
         {folder.path().filename().string(), (folder.path() / "file").string(),
          (folder.path() / "missing").string()}) {
        EXPECT_THROW(chooseMachineRoot(value.c_str(), false), std::invalid_argument) << value;
    }
}

TEST(MachineRootPaths, RootFollowsOnlyRoot) {
    const std::tuple<uid_t, uid_t, mode_t, bool> rows[] = {
        {0, 0, 0755, true},   {0, 501, 0700, false},  {0, 0, 0775, false},
        {0, 0, 01777, false}, {501, 501, 0777, true}, {501, 502, 0700, true}};
    for (const auto& [user, owner, mode, mayTrust] : rows) {
        EXPECT_EQ(mayTrustMachineRoot(user, owner, mode), mayTrust) << owner << " " << mode;
    }
}

TEST(HostPlatformChoice, AHostWithoutAMachineHasNoService) {
    ::unsetenv(MachineRoot::environmentVariable);
    const HostPlatform host = makeHostPlatform(false);
    EXPECT_EQ(host.platform.machineKind, MachineKind::none);
    EXPECT_EQ(host.platform.machineRoot.folder(), "/");
    IOKit& ioKit = *host.platform.ioKit;
    EXPECT_EQ(ioKit.serviceGetMatchingService(ioKit.serviceMatching("AppleSMC")), 0U);
    EXPECT_FALSE(host.platform.consoleUser->current());
}

} // namespace
} // namespace ventaro
