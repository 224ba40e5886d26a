#include "HelperLog.h"

#include "FileDescriptor.h"

#include <unistd.h>

#include <array>
#include <ctime>

namespace ventaro {

namespace {

void writeLine(int descriptor, std::string_view line) {
    if (!canWrite(descriptor)) {
        return; // a full pipe: nobody reads the log
    }
    std::array<char, 32> stamp{};
    const std::time_t now = std::time(nullptr);
    std::tm parts{};
    ::gmtime_r(&now, &parts);
    std::strftime(stamp.data(), stamp.size(), "%Y-%m-%dT%H:%M:%SZ ", &parts);
    const std::string text = stamp.data() + std::string(line) + '\n';
    [[maybe_unused]] const ssize_t written = ::write(descriptor, text.data(), text.size());
}

} // namespace

void HelperLog::change(std::string_view line) const { writeLine(changes_, line); }

void HelperLog::error(std::string_view line) const { writeLine(errors_, line); }

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
