#pragma once

#include "SimulatedMachine.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

namespace ventaro {

/// A virtual X11 screen with nothing on it, and what a person or a panel does there.
class Desktop {
public:
    explicit Desktop(const std::filesystem::path& folder)
        : folder_(folder),
          server_(folder, {"Xvfb", "-displayfd", "1", "-screen", "0", "1280x900x24", "-nolisten",
                           "tcp", "-noreset"}) {
        EXPECT_TRUE(waitUntil([this] { return server_.output().find('\n') != std::string::npos; }))
            << server_.errors();
        environment_ = {"DISPLAY=:" + server_.output().substr(0, server_.output().find('\n')),
                        "QT_QPA_PLATFORM=xcb", "XDG_RUNTIME_DIR=" + folder.string(),
                        "DBUS_SESSION_BUS_ADDRESS=unix:path=/nonexistent"};
    }
    ~Desktop() { end(); }
    void end() {
        server_.signal(SIGTERM);
        server_.wait();
    }

    const std::vector<std::string>& environment() const { return environment_; }
    std::string run(const std::vector<std::string>& arguments) const {
        return runProgram(folder_, arguments, environment_).output;
    }
    /// The window on screen whose title begins with `title`; empty if there is none.
    std::string window(const std::string& title) const {
        std::istringstream found(
            run({"xdotool", "search", "--onlyvisible", "--name", "^" + title}));
        std::string first;
        found >> first;
        return first;
    }
    bool shows(const std::string& title) const {
        return waitUntil([&] { return !window(title).empty(); });
    }
    bool hides(const std::string& title) const {
        return waitUntil([&] { return window(title).empty(); });
    }
    std::string property(const std::string& window, const std::string& name) const {
        return run({"xprop", "-id", window, name});
    }
    bool activates(const std::string& title) const {
        return waitUntil([&] {
            return !window(title).empty() &&
                   run({"xdotool", "getactivewindow"}) == window(title) + "\n";
        });
    }
    void keys(const std::vector<std::string>& names) const {
        for (const std::string& name : names) {
            run({"xdotool", "key", name});
        }
    }
    void click(const std::string& title, const std::string& button) const {
        run({"xdotool", "mousemove", "--window", window(title), "20", "10", "click", button});
    }
    void drag(int fromX, int fromY, int toX, int toY) const {
        run({"xdotool", "mousemove", std::to_string(fromX), std::to_string(fromY), "mousedown", "1",
             "mousemove", std::to_string((fromX + toX) / 2), std::to_string((fromY + toY) / 2),
             "mousemove", std::to_string(toX), std::to_string(toY), "mouseup", "1"});
    }
    void click(int x, int y) const {
        run({"xdotool", "mousemove", std::to_string(x), std::to_string(y), "click", "1"});
    }

private:
    std::filesystem::path folder_;
    Program server_;
    std::vector<std::string> environment_;
};

/// A window manager on a desktop.
class WindowManager {
public:
    explicit WindowManager(const std::filesystem::path& folder, const Desktop& desktop)
        // It says so at the end of its start: windows that come in the midst of it wait for the
        // next event, which may never be.
        : program_(folder, {"openbox", "--startup", "echo started"}, desktop.environment()) {
        EXPECT_TRUE(waitUntil([this] {
            return program_.output().find("started") != std::string::npos;
        })) << program_.errors();
    }

private:
    Program program_;
};

/// A session bus of a test's own.
class SessionBus {
public:
    explicit SessionBus(const std::filesystem::path& folder,
                        const std::vector<std::string>& environment = {})
        : address_("unix:path=" + (folder / "session-bus").string()),
          daemon_(
              folder,
              {"dbus-daemon", "--session", "--nofork", "--print-address", "--address=" + address_},
              environment) {
        EXPECT_TRUE(waitUntil([this] { return daemon_.output().find('\n') != std::string::npos; }))
            << daemon_.errors();
    }
    const std::string& address() const { return address_; }
    std::string environment() const { return "DBUS_SESSION_BUS_ADDRESS=" + address_; }

private:
    std::string address_;
    Program daemon_;
};

} // namespace ventaro
