#include "HelperLog.h"

#include "FileDescriptor.h"

#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <ctime>

namespace ventaro {

void BoundedLog::line(std::string_view text, Clock::time_point now) {
    if (now - minuteBegan_ >= std::chrono::minutes(1)) {
        if (lines_ > linesPerMinute) {
            write(std::to_string(lines_ - linesPerMinute) + " more lines left out");
        }
        minuteBegan_ = now;
        lines_ = 0;
    }
    if (++lines_ <= linesPerMinute) {
        write(text);
    }
}

void BoundedLog::write(std::string_view text) const {
    if (!canWrite(descriptor_)) {
        return; // a full pipe: nobody reads the log
    }
    struct stat status {};
    if (::fstat(descriptor_, &status) == 0 && S_ISREG(status.st_mode) &&
        static_cast<std::size_t>(status.st_size) > largestFile) {
        [[maybe_unused]] const int emptied = ::ftruncate(descriptor_, 0);
    }
    std::array<char, 32> stamp{};
    const std::time_t now = std::time(nullptr);
    std::tm parts{};
    ::gmtime_r(&now, &parts);
    std::strftime(stamp.data(), stamp.size(), "%Y-%m-%dT%H:%M:%SZ ", &parts);
    const std::string line = stamp.data() + std::string(text) + '\n';
    [[maybe_unused]] const ssize_t written = ::write(descriptor_, line.data(), line.size());
}

std::string escapedForLog(std::string_view text) {
    constexpr std::size_t most = 120;
    constexpr std::string_view digits = "0123456789abcdef";
    std::string escaped;
    for (const char character : text.substr(0, most)) {
        const auto byte = static_cast<unsigned char>(character);
        if (byte >= 0x20 && byte < 0x7F && character != '\\') {
            escaped += character;
        } else {
            escaped += {'\\', 'x', digits[byte >> 4U], digits[byte & 0xFU]};
        }
    }
    return text.size() > most ? escaped + "..." : escaped;
}

} // namespace ventaro
