#include "Launchd.h"

#include "MachineFolder.h"
#include "PropertyList.h"
#include "TestSupport.h"

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <csignal>

namespace ventaro {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

std::string propertyList(const std::string& body) {
    return "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict>" + body + "</dict></plist>";
}

TEST(PropertyLists, AreReadAndChecked) {
    const TemporaryFolder folder;
    const auto file = folder.path() / "job.plist";
    const std::string label = "<key>Label</key><string>a &amp; b</string>";
    const std::string arguments =
        "<key>ProgramArguments</key><array><string>/x</string><string>ü</string></array>";
    writeFile(file, propertyList(label +
                                 "<!-- c --><key>Unknown</key><dict><key>Label</key>"
                                 "<string>no</string></dict>" +
                                 arguments + "<key>KeepAlive</key><true/>"));
    const LaunchdJobDescription job = readLaunchdPropertyList(file);
    EXPECT_EQ(job.label, "a & b");
    EXPECT_EQ(job.programArguments, (std::vector<std::string>{"/x", "ü"}));
    EXPECT_TRUE(job.keepAlive);
    EXPECT_FALSE(job.runAtLoad);
    for (const std::string& text :
         {std::string("no xml"), propertyList(label), propertyList(arguments),
          propertyList(label + arguments + "<key>KeepAlive</key><string>yes</string>"),
          propertyList(label + "<key>ProgramArguments</key><string>/x</string>"),
          propertyList("<key>Label</key><true/>" + arguments)}) {
        writeFile(file, text);
        EXPECT_THROW(readLaunchdPropertyList(file), std::runtime_error) << text;
    }
    EXPECT_THROW(readLaunchdPropertyList(folder.path() / "missing"), std::runtime_error);
}

/// launchd on a stepped clock, with one job that writes a line and then sleeps.
class LaunchdOnASteppedClock : public testing::Test {
protected:
    void SetUp() override {
        const auto program = folder_.root().resolve("/job");
        writeFile(program, "#!/bin/sh\necho started \"$GREETING\"\nexec sleep 1000\n");
        std::filesystem::permissions(program, std::filesystem::perms::owner_all);
        writeFile(list_, propertyList("<key>Label</key><string>job</string><key>ProgramArguments"
                                      "</key><array><string>/job</string></array><key>KeepAlive"
                                      "</key><true/><key>StandardOutPath</key><string>"
                                      "/var/log/job.log</string>"));
    }
    void TearDown() override {
        if (const pid_t process = running(); process != 0) {
            ::kill(process, SIGKILL);
            ::waitpid(process, nullptr, 0);
        }
    }
    pid_t running() const {
        const std::string line = launchd_.list();
        return line.empty() || line[0] == '-' ? 0 : std::stoi(line);
    }
    bool hasStarted(int times) const {
        return waitUntil([&] {
            const std::string log = readFile(folder_.root().resolve("/var/log/job.log"));
            return std::count(log.begin(), log.end(), '\n') == times;
        });
    }
    void killJob() {
        const pid_t process = running();
        int status = 0;
        ::kill(process, SIGKILL);
        ::waitpid(process, &status, 0);
        EXPECT_TRUE(launchd_.childEnded(process, status));
    }
    std::string log() const { return readFile(folder_.root().resolve("/var/log/launchd.log")); }

    TemporaryFolder temporary_;
    MachineFolder folder_{temporary_.path() / "m"};
    std::filesystem::path list_ = folder_.root().resolve("/Library/LaunchDaemons/job.plist");
    EventLoop loop_;
    MachineClock clock_ = MachineClock::stepped();
    Launchd launchd_{loop_, clock_, folder_.root(), {"GREETING=hello"}};
};

TEST_F(LaunchdOnASteppedClock, KeepsAJobAliveButHoldsACrashLoopBack) {
    launchd_.loadInstalledDaemons();
    ASSERT_TRUE(hasStarted(1));
    EXPECT_EQ(readFile(folder_.root().resolve("/var/log/job.log")), "started hello\n");

    clock_.step(seconds(10));
    killJob();
    EXPECT_TRUE(hasStarted(2)) << "after ten seconds it restarts at once";

    clock_.step(milliseconds(9999));
    killJob();
    launchd_.startDueJobs();
    EXPECT_EQ(running(), 0) << "under ten seconds it waits";
    EXPECT_NE(log().find("job ended with signal 9 after 9999 ms, restart held back"),
              std::string::npos);
    clock_.step(milliseconds(1));
    launchd_.startDueJobs();
    EXPECT_TRUE(hasStarted(3));
}

TEST_F(LaunchdOnASteppedClock, AProgramThatIsNotThereIsLoggedAndTriedAgain) {
    std::filesystem::remove(folder_.root().resolve("/job"));
    writeFile(folder_.root().resolve("/Library/LaunchDaemons/bad.plist"), "nonsense");
    launchd_.loadInstalledDaemons();
    EXPECT_NE(log().find("bad.plist"), std::string::npos);
    EXPECT_NE(log().find("job cannot be started"), std::string::npos);
    SetUp();
    clock_.step(seconds(10));
    launchd_.startDueJobs();
    EXPECT_TRUE(hasStarted(1));
}

} // namespace
} // namespace ventaro
