#pragma once

#include <sys/types.h>

#include <chrono>
#include <filesystem>
#include <functional>
#include <random>
#include <string>
#include <vector>

namespace ventaro {

/// A folder of its own, short enough for socket paths, removed at the end.
class TemporaryFolder {
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& path() const { return path_; }

private:
    std::filesystem::path path_;
};

/// Waits until the condition holds; false after a minute.
bool waitUntil(const std::function<bool()>& condition);

/// The descriptors that this process has open.
std::size_t openDescriptors();

std::string readFile(const std::filesystem::path& path);
/// The text of a file in the folder `data` beside the test's source.
std::string testData(const std::string& name, const char* source = __builtin_FILE());
void writeFile(const std::filesystem::path& path, const std::string& text);

/// A JSON text in which a few bytes, or the values of a few members, have become something else.
std::string damaged(std::string text, std::mt19937& random);

/// A program that runs beside the test. The destructor kills it.
class Program {
public:
    /// Output goes to files below `folder`. `environment` is added to this process's.
    Program(const std::filesystem::path& folder, const std::vector<std::string>& arguments,
            const std::vector<std::string>& environment = {});
    ~Program();
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    pid_t pid() const { return pid_; }
    void signal(int number) const;
    /// Waits for the end: the exit code, or minus the number of the signal that ended it.
    int wait();
    std::string output() const { return readFile(outputPath_); }
    std::string errors() const { return readFile(errorPath_); }
    bool has(const std::string& text) const { return output().find(text) != std::string::npos; }
    /// Waits until `text` is in the output.
    bool prints(const std::string& text) const {
        return waitUntil([&] { return has(text); });
    }

private:
    std::filesystem::path outputPath_;
    std::filesystem::path errorPath_;
    pid_t pid_ = -1;
    int status_ = 0;
};

} // namespace ventaro
