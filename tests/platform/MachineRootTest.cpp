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
}

TEST(MachineRootPaths, TheEnvironmentMustNameAFolder) {
    const TemporaryFolder folder;
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
    EXPECT_TRUE(mayTrustMachineRoot(0, 0, 0755));
    EXPECT_FALSE(mayTrustMachineRoot(0, 501, 0700));
    EXPECT_FALSE(mayTrustMachineRoot(0, 0, 0775));
    EXPECT_FALSE(mayTrustMachineRoot(0, 0, 01777));
    EXPECT_TRUE(mayTrustMachineRoot(501, 501, 0777));
    EXPECT_TRUE(mayTrustMachineRoot(501, 502, 0700));
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
