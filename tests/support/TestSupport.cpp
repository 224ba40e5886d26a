#include "TestSupport.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <thread>

namespace ventaro {

namespace fs = std::filesystem;

TemporaryFolder::TemporaryFolder() {
    std::string pattern = fs::temp_directory_path() / "vt-XXXXXX";
    if (::mkdtemp(pattern.data()) == nullptr) {
        throw std::runtime_error("no temporary folder");
    }
    path_ = pattern;
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
}

bool waitUntil(const std::function<bool()>& condition) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::minutes(1);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return true;
}

std::size_t openDescriptors() {
    const fs::directory_iterator entries("/proc/self/fd");
    return static_cast<std::size_t>(std::distance(fs::begin(entries), fs::end(entries)));
}

std::string readFile(const fs::path& path) {
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::string testData(const std::string& name, const char* source) {
    return readFile(std::filesystem::path(source).parent_path() / "data" / name);
}

void writeFile(const fs::path& path, const std::string& text) { std::ofstream(path) << text; }

std::string damaged(std::string text, std::mt19937& random) {
    static const std::string pieces[] = {
        "",     "{",  "}",     "[",    "]",     ",",  ":",    "null",
        "true", "-1", "1e999", "7.5",  "\"",    "\\", "0x1",  "\"\\u00",
        "[[[[", "{}", "\xc3",  "[{}]", "\"x\"", ",,", "\x01", "99999999999999999999"};
    for (std::size_t changes = random() % 4 + 1; changes > 0; --changes) {
        std::size_t at = random() % (text.size() + 1);
        std::size_t end = at + random() % 20;
        if (const auto colon = text.find(':', at);
            random() % 2 == 0 && colon != std::string::npos) {
            at = colon + 1;
            end = text.find_first_of(",}", at);
        }
        text.replace(at, end - at, pieces[random() % std::size(pieces)]);
    }
    return text;
}

Program::Program(const fs::path& folder, const std::vector<std::string>& arguments,
                 const std::vector<std::string>& environment) {
    static std::atomic<int> count{0};
    const std::string name = "program-" + std::to_string(++count);
    outputPath_ = folder / (name + ".out");
    errorPath_ = folder / (name + ".err");
    std::vector<char*> words;
    for (const std::string& argument : arguments) {
        words.push_back(const_cast<char*>(argument.c_str()));
    }
    words.push_back(nullptr);
    pid_ = ::fork();
    if (pid_ == 0) {
        constexpr mode_t mode = 0600;
        ::prctl(PR_SET_PDEATHSIG, SIGTERM); // a test that is killed leaves no machine behind
        ::dup2(::open("/dev/null", O_RDONLY), STDIN_FILENO);
        ::dup2(::open(outputPath_.c_str(), O_WRONLY | O_CREAT, mode), STDOUT_FILENO);
        ::dup2(::open(errorPath_.c_str(), O_WRONLY | O_CREAT, mode), STDERR_FILENO);
        for (const std::string& entry : environment) {
            ::putenv(const_cast<char*>(entry.c_str()));
        }
        ::execvp(words[0], words.data());
        ::_exit(127);
    }
}

Program::~Program() {
    if (pid_ > 0) {
        signal(SIGKILL);
        wait();
    }
}

void Program::signal(int number) const {
    if (pid_ > 0) {
        ::kill(pid_, number);
    }
}

int Program::wait() {
    while (pid_ > 0 && ::waitpid(pid_, &status_, 0) < 0 && errno == EINTR) {
    }
    pid_ = -1;
    return WIFSIGNALED(status_) ? -WTERMSIG(status_) : WEXITSTATUS(status_);
}

} // namespace ventaro
