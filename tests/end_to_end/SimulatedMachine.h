#pragma once

#include "HelperIPC.h"
#include "TestSupport.h"

#include <gmock/gmock.h>

#include <csignal>
#include <cstdlib>
#include <memory>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

namespace ventaro {

inline const std::string bin = VENTARO_BIN;

struct Outcome {
    int exitCode;
    std::string output;
    std::string errors;

    // NOLINTNEXTLINE(readability-identifier-naming): the test library looks for it
    friend void PrintTo(const Outcome& outcome, std::ostream* stream) {
        *stream << outcome.exitCode << "\n" << outcome.output << outcome.errors;
    }
};

/// An outcome with this exit code, and this in its errors.
inline auto ends(int exitCode, const std::string& errors = {}) {
    return testing::AllOf(testing::Field(&Outcome::exitCode, exitCode),
                          testing::Field(&Outcome::errors, testing::HasSubstr(errors)));
}

inline Outcome runProgram(const std::filesystem::path& folder,
                          const std::vector<std::string>& arguments,
                          const std::vector<std::string>& environment = {}) {
    Program program(folder, arguments, environment);
    const int exitCode = program.wait();
    return {exitCode, program.output(), program.errors()};
}

inline std::vector<std::string> split(const std::string& text, char separator = ' ') {
    std::vector<std::string> parts;
    std::istringstream stream(text);
    for (std::string part; std::getline(stream, part, separator);) {
        parts.push_back(part);
    }
    return parts;
}

/// A simulated MacBook on a stepped clock, switched on for the length of a test.
class SimulatedMachine {
public:
    explicit SimulatedMachine(std::vector<std::string> options = {}, bool helperInstalled = true)
        : root_(folder_.path() / "m") {
        options.insert(options.begin(), {bin + "VentaroSimulator", "--stepped", "--root", root_,
                                         "--helper", helperInstalled ? "installed" : "absent"});
        simulator_ = std::make_unique<Program>(folder_.path(), options);
        EXPECT_TRUE(waitUntil([&] {
            return simulator_->has("Ctrl-C") && (!helperInstalled || ctl("ping").exitCode == 0);
        })) << simulator_->errors();
    }
    ~SimulatedMachine() {
        simulator_->signal(SIGTERM);
        EXPECT_EQ(simulator_->wait(), 0);
    }

    const std::filesystem::path& root() const { return root_; }
    const std::filesystem::path& folder() const { return folder_.path(); }
    std::string path(const std::string& machinePath) const { return root_.string() + machinePath; }
    std::string log(const std::string& name) const { return readFile(path("/var/log/" + name)); }

    std::vector<std::string> environment(const char* access = "user") const {
        return {"VENTARO_MACHINE_ROOT=" + root_.string(),
                std::string("VENTARO_MACHINE_ACCESS=") + access};
    }
    Outcome run(const std::vector<std::string>& arguments, const char* access = "user") const {
        return runProgram(folder_.path(), arguments, environment(access));
    }
    /// Command lines in words without blanks.
    Outcome ctl(const std::string& words) const { return run(split(bin + "ventaroctl " + words)); }
    Outcome control(const std::string& words) const {
        return run(split(bin + "VentaroSimulator control " + words));
    }
    Outcome launchctl(const std::string& words) const {
        return run(split(path("/usr/bin/launchctl ") + words), "root");
    }
    /// Values as ventaroctl prints them, but for zeros behind the point: of "F0Md,F0Tg" "1,4000".
    std::string keys(const std::string& names) const {
        std::string values;
        for (const std::string& name : split(names, ',')) {
            const std::string text = run({bin + "ventaroctl", "key", name}).output;
            std::smatch value;
            std::regex_search(text, value, std::regex("Value  (\\S+?)(\\.0*)?\n"));
            values += (values.empty() ? "" : ",") + (value.empty() ? text : value.str(1));
        }
        return values;
    }
    double number(const std::string& key) const { return std::stod(keys(key)); }
    bool becomes(const std::string& names, const std::string& values) const {
        return waitUntil([&] { return keys(names) == values; });
    }
    bool answers(bool expected = true) const {
        return waitUntil([&] { return (ctl("ping").exitCode == 0) == expected; });
    }
    /// The helper's process; 0 while it does not run.
    pid_t helperProcess() const { return std::atoi(launchctl("list").output.c_str()); }

private:
    TemporaryFolder folder_;
    std::filesystem::path root_;
    std::unique_ptr<Program> simulator_;
};

} // namespace ventaro
