#include "SingleInstance.h"

#include "ShellFixture.h"
#include "UnixSocket.h"

#include <gmock/gmock.h>
#include <unistd.h>

#include <future>

namespace ventaro {
namespace {

namespace fs = std::filesystem;
using Request = SingleInstance::Request;
using Role = SingleInstance::Role;
using std::chrono::milliseconds;

class SingleInstanceTest : public testing::Test {
protected:
    fs::path place() const {
        return folder_.path() / ("tmp/ventaro-" + std::to_string(::getuid()));
    }
    /// A second start beside this one.
    std::future<Role> start(Request request, milliseconds patience = std::chrono::minutes(1)) {
        return std::async(std::launch::async, [this, request, patience] {
            return SingleInstance(root_).claim(request, patience);
        });
    }
    static Role result(std::future<Role> role) {
        EXPECT_TRUE(processUntil(
            [&] { return role.wait_for(milliseconds(0)) == std::future_status::ready; }));
        return role.get();
    }

    TemporaryFolder folder_;
    MachineRoot root_{folder_.path()};
};

TEST_F(SingleInstanceTest, OneOfManyRunsAndHearsOfTheOthers) {
    auto first = std::make_unique<SingleInstance>(root_);
    listenOnUnixSocket(place() / "socket", 0600); // left behind by a crash
    ASSERT_EQ(first->claim(Request::reopen), Role::first);
    auto early = start(Request::reopen); // it finds nobody listening yet
    int reopened = 0;
    QObject::connect(first.get(), &SingleInstance::reopenRequested, [&] { ++reopened; });
    first->listen();
    EXPECT_EQ(result(std::move(early)), Role::second);
    EXPECT_EQ(result(start(Request::nothing)), Role::second);
    EXPECT_EQ(reopened, 1);
    EXPECT_EQ(fs::status(place()).permissions(), fs::perms::owner_all);
    EXPECT_EQ(fs::status(place() / "socket").permissions() &
                  (fs::perms::group_all | fs::perms::others_all),
              fs::perms::none);

    // The silent and the babblers hold nobody up.
    std::vector<FileDescriptor> visitors;
    for (int count = 0; count < 12; ++count) {
        visitors.push_back(connectToUnixSocket(place() / "socket", milliseconds(100)));
        const std::string bad(count % 2 == 0 ? 0 : 100000, 'r');
        ::send(visitors.back().get(), bad.data(), bad.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
        QCoreApplication::processEvents();
    }
    EXPECT_EQ(result(start(Request::reopen)), Role::second);
    EXPECT_EQ(reopened, 2);

    auto next = start(Request::reopen);
    first.reset();
    EXPECT_EQ(next.get(), Role::first) << "in place of the one that has ended";
}

TEST_F(SingleInstanceTest, SaysSoWhenTheFirstIsStuck) {
    SingleInstance first(root_);
    ASSERT_EQ(first.claim(Request::reopen), Role::first);
    first.listen();
    EXPECT_THROW(start(Request::reopen, milliseconds(50)).get(), std::runtime_error);
}

TEST_F(SingleInstanceTest, RefusesAFolderThatOthersCanReach) {
    fs::create_directories(place());
    fs::permissions(place(), fs::perms::all);
    EXPECT_THROW(SingleInstance{root_}, std::runtime_error);
    fs::permissions(place(), fs::perms::owner_all);
    EXPECT_NO_THROW(SingleInstance{root_});
    constexpr uid_t stranger = 65534;
    if (::chown(place().c_str(), stranger, static_cast<gid_t>(-1)) == 0) { // only root may
        EXPECT_THROW(SingleInstance{root_}, std::runtime_error);
    }
    fs::remove_all(place());
    fs::create_directory(folder_.path() / "mine");
    fs::permissions(folder_.path() / "mine", fs::perms::owner_all);
    fs::create_directory_symlink(folder_.path() / "mine", place());
    EXPECT_THROW(SingleInstance{root_}, std::runtime_error);
}

} // namespace
} // namespace ventaro
