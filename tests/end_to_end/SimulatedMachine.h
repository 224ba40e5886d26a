#pragma once

#include "HelperIPC.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

namespace ventaro {

inline const std::string bin = VENTARO_BIN;

struct Outcome {
    int exitCode;
    std::string output;
    std::string errors;
};

inline Outcome runProgram(const std::filesystem::path& folder,
                          const std::vector<std::string>& arguments,
                          const std::vector<std::string>& environment = {}) {
    Program program(folder, arguments, environment);
    const int exitCode = program.wait();
    return {exitCode, program.output(), program.errors()};
}

/// A simulated MacBook on a stepped clock, switched on for the length of a test.
class SimulatedMachine {
public:
    explicit SimulatedMachine(std::vector<std::string> options = {}, bool helperInstalled = true)
        : root_(folder_.path() / "m") {
        std::vector<std::string> arguments{bin + "VentaroSimulator",
                                           "--stepped",
                                           "--root",
                                           root_,
                                           "--helper",
                                           helperInstalled ? "installed" : "absent"};
        arguments.insert(arguments.end(), options.begin(), options.end());
        simulator_ = std::make_unique<Program>(folder_.path(), arguments);
        EXPECT_TRUE(waitUntil([&] {
            return simulator_->output().find("Ctrl-C") != std::string::npos &&
                   (!helperInstalled || ctl({"ping"}).exitCode == 0);
        })) << simulator_->errors();
    }
    ~SimulatedMachine() { EXPECT_EQ(switchOff(), 0); }

    int switchOff() {
        simulator_->signal(SIGTERM);
        return simulator_->wait();
    }
    const std::filesystem::path& root() const { return root_; }
    const std::filesystem::path& folder() const { return folder_.path(); }
    std::string path(const std::string& machinePath) const { return root_.string() + machinePath; }

    std::vector<std::string> environment(const char* access = "user") const {
        return {"VENTARO_MACHINE_ROOT=" + root_.string(),
                std::string("VENTARO_MACHINE_ACCESS=") + access};
    }
    Outcome run(const std::vector<std::string>& arguments, const char* access = "user") const {
        return runProgram(folder_.path(), arguments, environment(access));
    }
    Outcome ctl(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), bin + "ventaroctl");
        return run(arguments);
    }
    Outcome control(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), {bin + "VentaroSimulator", "control"});
        return run(arguments);
    }
    Outcome launchctl(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), path("/usr/bin/launchctl"));
        return run(arguments, "root");
    }
    /// A key's value as ventaroctl prints it.
    std::string key(const std::string& name) const {
        const std::string text = ctl({"key", name}).output;
        const std::size_t at = text.find("Value  ");
        return at == std::string::npos ? text : text.substr(at + 7, text.find('\n', at) - at - 7);
    }
    /// The helper's process; 0 while it does not run.
    pid_t helperProcess() const { return std::atoi(launchctl({"list"}).output.c_str()); }

private:
    TemporaryFolder folder_;
    std::filesystem::path root_;
    std::unique_ptr<Program> simulator_;
};

} // namespace ventaro
