#include "PeerRights.h"

#include "FileDescriptor.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <charconv>
#include <string>

namespace ventaro {

PeerRights::PeerRights(const ConsoleUser& console, std::filesystem::path memory)
    : console_(console), memory_(std::move(memory)) {
    const FileDescriptor file(::open(memory_.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW));
    std::array<char, 16> text{};
    const ssize_t size = file ? ::read(file.get(), text.data(), text.size()) : 0;
    uid_t user = 0;
    const char* const end = text.data() + (size > 0 ? size : 0);
    if (const auto number = std::from_chars(text.data(), end, user);
        number.ec == std::errc{} && number.ptr == end) {
        lastForcing_ = user;
    }
}

PeerAccess PeerRights::of(std::optional<uid_t> peer) const {
    if (peer && (*peer == 0 || peer == console_.current())) {
        return PeerAccess::everything;
    }
    return peer && peer == lastForcing_ ? PeerAccess::handBack : PeerAccess::nothing;
}

void PeerRights::rememberForcing(std::optional<uid_t> user) {
    if (user == lastForcing_) {
        return;
    }
    lastForcing_ = user;
    const FileDescriptor file(::open(memory_.c_str(), O_WRONLY | O_TRUNC | O_CLOEXEC | O_NOFOLLOW));
    const std::string text = user ? std::to_string(*user) : "";
    [[maybe_unused]] const ssize_t written =
        file ? ::write(file.get(), text.data(), text.size()) : 0;
}

} // namespace ventaro
