#pragma once

#include "SimulatedMachine.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace ventaro {

/// A session bus of a test's own.
struct SessionBus {
    explicit SessionBus(const std::filesystem::path& folder,
                        const std::vector<std::string>& environment = {})
        : address("unix:path=" + (folder / "session-bus").string()),
          daemon(
              folder,
              {"dbus-daemon", "--session", "--nofork", "--print-address", "--address=" + address},
              environment) {
        EXPECT_TRUE(daemon.prints("\n")) << daemon.errors();
    }
    std::string environment() const { return "DBUS_SESSION_BUS_ADDRESS=" + address; }

    const std::string address;
    const Program daemon;
};

/// A virtual X11 screen with nothing on it, and what a person or a panel does there.
class Desktop {
public:
    explicit Desktop(const std::filesystem::path& folder)
        : folder_(folder),
          server_(folder, {"Xvfb", "-displayfd", "1", "-screen", "0", "1280x900x24", "-nolisten",
                           "tcp", "-noreset"}) {
        EXPECT_TRUE(server_.prints("\n")) << server_.errors();
        environment_ = {"DISPLAY=:" + server_.output().substr(0, server_.output().find('\n')),
                        "QT_QPA_PLATFORM=xcb", "XDG_RUNTIME_DIR=" + folder.string(),
                        "DBUS_SESSION_BUS_ADDRESS=unix:path=/nonexistent"};
    }
    ~Desktop() { end(); }
    void end() {
        server_.signal(SIGTERM);
        server_.wait();
    }
    /// Starts a window manager.
    std::unique_ptr<Program> manageWindows() const {
        auto manager = std::make_unique<Program>(
            folder_, std::vector<std::string>{"openbox", "--startup", "echo started"},
            environment_);
        // It says so at the end of its start: windows that come in the midst of it wait for the
        // next event, which may never be.
        EXPECT_TRUE(waitUntil([&] {
            return manager->output().find("started") != std::string::npos;
        })) << manager->errors();
        return manager;
    }

    /// Starts the application on `machine`. `more` comes last in its environment.
    std::unique_ptr<Program> start(const SimulatedMachine& machine,
                                   std::vector<std::string> arguments = {},
                                   const std::vector<std::string>& more = {}) const {
        arguments.insert(arguments.begin(), bin + "Ventaro");
        auto environment = machine.environment();
        for (const auto& part : {environment_, more}) {
            environment.insert(environment.end(), part.begin(), part.end());
        }
        return std::make_unique<Program>(folder_, arguments, environment);
    }

    const std::vector<std::string>& environment() const { return environment_; }
    std::string run(const std::vector<std::string>& arguments) const {
        return runProgram(folder_, arguments, environment_).output;
    }
    /// The window on screen whose title begins with `title`; empty if there is none.
    std::string window(const std::string& title) const {
        const std::string found =
            run({"xdotool", "search", "--onlyvisible", "--name", "^" + title});
        return found.substr(0, found.find('\n'));
    }
    bool shows(const std::string& title) const {
        return waitUntil([&] { return !window(title).empty(); });
    }
    bool hides(const std::string& title) const {
        return waitUntil([&] { return window(title).empty(); });
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
    void click(int x, int y) const { drag(x, y, x, y); }
    void drag(int fromX, int fromY, int toX, int toY) const {
        run({"xdotool", "mousemove", std::to_string(fromX), std::to_string(fromY), "mousedown", "1",
             "mousemove", std::to_string((fromX + toX) / 2), std::to_string((fromY + toY) / 2),
             "mousemove", std::to_string(toX), std::to_string(toY), "mouseup", "1"});
    }

private:
    std::filesystem::path folder_;
    Program server_;
    std::vector<std::string> environment_;
};

} // namespace ventaro
