#include "AtomicFile.h"
#include "EventLoop.h"
#include "FileDefaults.h"
#include "FileLock.h"
#include "LinuxClock.h"
#include "ProcessTable.h"
#include "SimulatedAdministratorScripts.h"
#include "SimulatedClock.h"
#include "TestSupport.h"
#include "UnixSocket.h"
#include "WakeUp.h"

#include <gmock/gmock.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <set>

namespace ventaro {
namespace {

namespace fs = std::filesystem;
using namespace testing;

TEST(EventLoopTest, AnEndedTurnLeavesTheRestForTheNextOne) {
    EventLoop loop;
    const WakeUp first;
    const WakeUp second;
    first.signal();
    second.signal();
    std::string calls;
    loop.watch(first.descriptor(), [&] {
        calls += "1";
        loop.endTurn();
    });
    loop.watch(second.descriptor(), [&] { calls += "2"; });
    loop.turn();
    EXPECT_EQ(calls, "1");
    loop.unwatch(first.descriptor());
    loop.turn();
    EXPECT_EQ(calls, "12");
}

TEST(FileLockTest, IsHeldOnceAndThroughNoLink) {
    const TemporaryFolder folder;
    const fs::path file = folder.path() / "lock";
    {
        const FileDescriptor held = tryLockFile(file);
        EXPECT_TRUE(held);
        EXPECT_FALSE(tryLockFile(file));
    }
    EXPECT_TRUE(tryLockFile(file));
    fs::create_symlink(file, folder.path() / "link");
    EXPECT_THROW(tryLockFile(folder.path() / "link"), std::system_error);
}

TEST(AtomicFiles, ReplaceWholeFilesAndNothingElse) {
    const TemporaryFolder folder;
    const fs::path file = folder.path() / "file";
    writeFile(folder.path() / "precious", "mine");
    fs::create_symlink(folder.path() / "precious", file);
    const mode_t umaskBefore = ::umask(0077);
    writeFileAtomically(file, "text", 0644);
    ::umask(umaskBefore);
    EXPECT_EQ(readFile(file), "text");
    EXPECT_EQ(fs::status(file).permissions(), fs::perms(0644));
    EXPECT_EQ(readFile(folder.path() / "precious"), "mine") << "the link was not followed";

    fs::create_directories(folder.path() / "folder/inside");
    for (const fs::path& path : {folder.path() / "missing/file", folder.path() / "folder"}) {
        EXPECT_THAT([&] { writeFileAtomically(path, "text", 0644); },
                    ThrowsMessage<FileError>(HasSubstr("kann nicht geschrieben werden: ")))
            << path;
    }
    EXPECT_THROW(createFolders(file / "below"), FileError);
    EXPECT_EQ(std::distance(fs::directory_iterator(folder.path()), fs::directory_iterator()), 3)
        << "no temporary file is left";
}

class FileDefaultsTest : public Test {
protected:
    FileDefaults open() {
        return FileDefaults(file_, [this](const std::string& line) { log_.push_back(line); });
    }
    const TemporaryFolder folder_;
    const fs::path file_ = folder_.path() / "config/settings.cbor";
    std::vector<std::string> log_;
};

TEST_F(FileDefaultsTest, KeepsValuesWithTheirTypes) {
    const std::vector<FileDefaults::Entry> entries{{"bool", true},
                                                   {"zero", 0.0},
                                                   {"number", 2200.25},
                                                   {"text", std::string("ä\0x", 4)},
                                                   {"data", DefaultsData{0x00, 0xFF, '"', 0x0A}}};
    open().store({{"bool", false}, {"kept", 1.0}});
    open().store(entries);
    const FileDefaults defaults = open();
    for (const auto& [key, value] : entries) {
        EXPECT_EQ(defaults.object(key), value) << key;
    }
    EXPECT_EQ(defaults.value<double>("kept"), 1);
    EXPECT_EQ(defaults.value<bool>("zero"), std::nullopt) << "a number is no boolean";
    EXPECT_EQ(defaults.value<std::string>("data"), std::nullopt);
    EXPECT_FALSE(defaults.object("missing"));
    EXPECT_THAT(log_, IsEmpty());
}

TEST_F(FileDefaultsTest, ADamagedFileIsSetAsideByTheNextSave) {
    open().store({{"number", 1.0}, {"text", std::string("text")}});
    const std::string whole = readFile(file_);
    const std::string deep(100000, '\x81');
    for (const std::string& text :
         {std::string(), whole.substr(0, whole.size() - 1), whole + "x", std::string("\x81\x01"),
          deep, "\xa1\x61k" + deep, std::string(2000000, 'x')}) {
        log_.clear();
        writeFile(file_, text);
        FileDefaults defaults = open();
        EXPECT_FALSE(defaults.object("number"));
        EXPECT_EQ(readFile(file_), text) << "reading changes nothing";
        EXPECT_THAT(log_, SizeIs(1));
        defaults.store({{"number", 2.0}});
        EXPECT_EQ(readFile(file_.string() + ".damaged"), text);
        EXPECT_EQ(open().value<double>("number"), 2);
    }
    log_.clear();
    writeFile(file_, "\xa3\x61k\xa1\x61n\x01\x61m\x81\x01\x61n\x02"); // values nobody knows
    EXPECT_EQ(open().value<double>("n"), 2);
    EXPECT_FALSE(open().object("k"));
    EXPECT_THAT(log_, IsEmpty());
}

TEST_F(FileDefaultsTest, WhatCannotBeReadIsNeverReplacedAndWhatCannotBeWrittenIsWrittenLater) {
    fs::create_directories(file_.parent_path());
    ASSERT_EQ(::mkfifo(file_.c_str(), 0600), 0);
    {
        FileDefaults unreadable = open(); // does not wait for a writer either
        unreadable.store({{"number", 1.0}});
        EXPECT_EQ(unreadable.value<double>("number"), 1);
    }
    EXPECT_TRUE(fs::is_fifo(file_));
    EXPECT_THAT(log_, ElementsAre(HasSubstr("nothing is saved")));

    fs::remove_all(file_.parent_path());
    writeFile(file_.parent_path(), "in the way of the folder");
    FileDefaults unwritable = open();
    unwritable.store({{"number", 2.0}});
    EXPECT_EQ(unwritable.value<double>("number"), 2);
    EXPECT_THAT(log_, ElementsAre(_, HasSubstr("not saved")));
    fs::remove(file_.parent_path());
    unwritable.store({{"number", 2.0}}); // the same once more
    EXPECT_EQ(open().value<double>("number"), 2);
}

TEST(AdministratorScriptsTest, AreDoShellScriptsOnThisMachine) {
    EXPECT_EQ(shellCommandOf(R"(do shell script "a \"b\" \\c" with administrator privileges)"),
              R"(a "b" \c)");
    for (const char* source :
         {"", "do shell script \"a\"", "do shell script \" with administrator privileges",
          R"(do shell script "a" b" with administrator privileges)",
          R"(do shell script "a\" with administrator privileges)"}) {
        EXPECT_FALSE(shellCommandOf(source)) << source;
    }
    // Words of the machine move below its root.
    const TemporaryFolder folder;
    const MachineRoot root(folder.path());
    const std::string in = "'" + folder.path().string() + "'";
    const std::pair<std::string, std::string> rows[] = {
        {"mkdir -p /Library/LaunchDaemons && ls",
         "mkdir -p " + in + "/Library/LaunchDaemons && ls"},
        {"cp -f '/a /var/run/b' '/var/run/c d'", "cp -f '/a /var/run/b' " + in + "'/var/run/c d'"},
        {"cp '/it'\\''s /var/run/x' y", "cp '/it'\\''s /var/run/x' y"},
        {"rm -f '/tmp/com.ventaro.helper.plist' 2>/dev/null||true",
         "rm -f " + in + "'/tmp/com.ventaro.helper.plist' 2>/dev/null||true"},
        {"rm '/var/run/x';rm /var/runx", "rm " + in + "'/var/run/x';rm /var/runx"},
        {"cp /tmp/com.ventaro.x /Library/Y", "cp /tmp/com.ventaro.x /Library/Y"},
    };
    for (const auto& [line, moved] : rows) {
        EXPECT_EQ(movedBelowRoot(line, root), moved);
    }
}

/// Each as its name and identifier.
std::set<std::string> shown(ProcessTable& table) {
    table.refresh();
    std::set<std::string> applications;
    for (const auto& application : *table.current()) {
        applications.insert(application.localizedName + " / " + application.bundleIdentifier);
    }
    return applications;
}

TEST(ProcessTableTest, KnowsProgramsByNameAndIdentifier) {
    const TemporaryFolder folder;
    const auto add = [&](const std::string& path, const char* program = "/bin/sleep") {
        const fs::path copy = folder.path() / path;
        fs::create_directories(copy.parent_path());
        fs::copy_file(program, copy);
        return copy.string();
    };
    ProcessTable table;
    ProcessTable machine{MachineRoot(folder.path())};
    const auto appears = [&](const std::string& application) {
        return waitUntil([&] { return shown(table).contains(application); });
    };
    const std::string longName = "Macs Fan Control with a long name";
    {
        const Program competitor(
            folder.path(), {add("bin/" + longName), "100"},
            {"VENTARO_MACHINE_ROOT=" + folder.path().string() + "/"}); // a slash too many
        const Program innocent(folder.path(), {add("Macs Fan Control/editor"), "100"});
        const std::string gate = folder.path() / "gate";
        ASSERT_EQ(::mkfifo(gate.c_str(), 0600), 0);
        const Program starter(folder.path(),
                              {add("bin/starter", "/bin/sh"), "-c",
                               "read line <" + gate +
                                   "; GIO_LAUNCHED_DESKTOP_FILE_PID=$$ "
                                   "GIO_LAUNCHED_DESKTOP_FILE=/usr/share/org.TGPro.App.desktop "
                                   "exec \"" +
                                   add("bin/fans") + "\" 100"});
        EXPECT_TRUE(appears("starter / starter"));
        writeFile(gate, "\n");
        EXPECT_TRUE(appears("fans / org.TGPro.App")) << "in a process that is known";
        EXPECT_TRUE(appears(longName + " / " + longName));
        EXPECT_TRUE(appears("editor / editor"));
        EXPECT_THAT(shown(machine), ElementsAre(longName + " / " + longName));
    }
    EXPECT_FALSE(shown(table).contains(longName + " / " + longName)) << "it has ended";
}

TEST(SimulatedClockTest, FollowsTheHostWhileTheMachineIsOff) {
    const TemporaryFolder folder;
    SimulatedClock clock(MachineRoot(folder.path()), std::make_unique<LinuxClock>());
    const auto ticker = clock.ticker(std::chrono::milliseconds(300));
    const auto canBeRead = [&](int milliseconds) {
        pollfd entry{ticker->descriptor(), POLLIN, 0};
        return ::poll(&entry, 1, milliseconds) == 1;
    };
    const auto ticksOnce = [&] {
        EXPECT_TRUE(canBeRead(60000));
        ticker->acknowledge();
        EXPECT_FALSE(canBeRead(0)) << "the tick has been taken";
    };
    ticksOnce();

    // The machine is switched on, ticks once, and is switched off.
    const fs::path socket = folder.path() / "var/run/ventaro-simulator/clock.sock";
    fs::create_directories(socket.parent_path());
    FileDescriptor listener = listenOnUnixSocket(socket, 0600);
    ticksOnce();
    FileDescriptor machine;
    EXPECT_TRUE(waitUntil([&] {
        machine.reset(::accept(listener.get(), nullptr, nullptr));
        return machine.get() >= 0;
    }));
    std::uint32_t interval = 0;
    EXPECT_EQ(::recv(machine.get(), &interval, sizeof interval, 0), sizeof interval);
    EXPECT_EQ(interval, 300U);
    EXPECT_EQ(::send(machine.get(), "", 1, 0), 1);
    ticksOnce();
    listener.reset();
    machine.reset();
    ticker->acknowledge();
    ticksOnce(); // in the host's time again
}

} // namespace
} // namespace ventaro
