#include "Launchd.h"

#include "MachineFolder.h"
#include "PropertyList.h"
#include "TestSupport.h"

#include <gmock/gmock.h>
#include <sys/wait.h>

#include <csignal>

namespace ventaro {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using namespace testing;

void writeList(const std::filesystem::path& file, const std::string& body) {
    writeFile(file,
              "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict>" + body + "</dict></plist>");
}

TEST(PropertyLists, AreReadAndChecked) {
    const TemporaryFolder folder;
    const auto file = folder.path() / "job.plist";
    const std::string label = "<key>Label</key><string>a &amp; b</string>";
    const std::string arguments = "<key>ProgramArguments</key><array><string>ü</string></array>";
    writeList(file, label + "<key>Unknown</key><dict><key>Label</key></dict>" + arguments +
                        "<key>KeepAlive</key><true/>");
    const LaunchdJobDescription job = readLaunchdPropertyList(file);
    EXPECT_EQ(job.label, "a & b");
    EXPECT_EQ(job.programArguments, std::vector<std::string>{"ü"});
    EXPECT_TRUE(job.keepAlive && !job.runAtLoad);
    const std::string bodies[] = {label,
                                  arguments,
                                  label + arguments + "<key>KeepAlive</key><string>yes</string>",
                                  label + "<key>ProgramArguments</key><string>/x</string>",
                                  "<no xml" + label + arguments,
                                  "<key>Label</key><true/>" + arguments};
    for (const std::string& body : bodies) {
        writeList(file, body);
        EXPECT_THROW(readLaunchdPropertyList(file), std::runtime_error) << body;
    }
}

/// launchd on a stepped clock, with one job that writes a line and then sleeps.
class LaunchdOnASteppedClock : public Test {
protected:
    void SetUp() override {
        const auto program = root_.resolve("/job");
        writeFile(program, "#!/bin/sh\necho started \"$GREETING\"\nexec sleep 1000\n");
        std::filesystem::permissions(program, std::filesystem::perms::owner_all);
        writeList(root_.resolve("/Library/LaunchDaemons/job.plist"),
                  "<key>Label</key><string>job</string><key>ProgramArguments</key><array><string>"
                  "/job</string></array><key>KeepAlive</key><true/><key>StandardOutPath</key>"
                  "<string>/var/log/job.log</string>");
    }
    void TearDown() override { endJob(); }
    pid_t running() const { return std::atoi(launchd_.list().c_str()); }
    /// The job is killed; launchd hears of it.
    void endJob() {
        int status = 0;
        if (const pid_t process = running(); process != 0) {
            ::kill(process, SIGKILL);
            ::waitpid(process, &status, 0);
            EXPECT_TRUE(launchd_.childEnded(process, status));
        }
    }
    bool hasStarted(std::size_t times) const {
        constexpr std::size_t line = std::string_view("started hello\n").size();
        return waitUntil([&] { return read("/var/log/job.log").size() == line * times; });
    }
    std::string read(const char* path) const { return readFile(root_.resolve(path)); }

    TemporaryFolder temporary_;
    MachineFolder folder_{temporary_.path() / "m"};
    const MachineRoot& root_ = folder_.root();
    EventLoop loop_;
    MachineClock clock_ = MachineClock::stepped();
    Launchd launchd_{loop_, clock_, root_, {"GREETING=hello"}};
};

TEST_F(LaunchdOnASteppedClock, KeepsAJobAliveButHoldsACrashLoopBack) {
    launchd_.loadInstalledDaemons();
    ASSERT_TRUE(hasStarted(1));
    clock_.step(seconds(10));
    endJob();
    EXPECT_TRUE(hasStarted(2)) << "after ten seconds it restarts at once";
    clock_.step(milliseconds(9999));
    endJob();
    launchd_.startDueJobs();
    EXPECT_EQ(running(), 0) << "under ten seconds it waits";
    EXPECT_THAT(read("/var/log/launchd.log"),
                HasSubstr("job ended with signal 9 after 9999 ms, restart held back"));
    clock_.step(milliseconds(1));
    launchd_.startDueJobs();
    EXPECT_TRUE(hasStarted(3));
}

TEST_F(LaunchdOnASteppedClock, AProgramThatIsNotThereIsLoggedAndTriedAgain) {
    std::filesystem::remove(root_.resolve("/job"));
    writeFile(root_.resolve("/Library/LaunchDaemons/bad.plist"), "nonsense");
    launchd_.loadInstalledDaemons();
    EXPECT_THAT(read("/var/log/launchd.log"),
                AllOf(HasSubstr("bad.plist"), HasSubstr("job cannot be started")));
    SetUp();
    clock_.step(seconds(10));
    launchd_.startDueJobs();
    EXPECT_TRUE(hasStarted(1));
}

} // namespace
} // namespace ventaro
