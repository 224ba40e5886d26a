#include "UUID.h"

#include <uuid/uuid.h>

#include <algorithm>
#include <random>

namespace ventaro {

UUID UUID::random() {
    // Seeded once per thread: the library asks the kernel each time, which takes microseconds.
    thread_local std::mt19937_64 generator = [] {
        std::random_device source;
        std::seed_seq seed{source(), source(), source(), source(),
                           source(), source(), source(), source()};
        return std::mt19937_64(seed);
    }();
    UUID uuid;
    std::generate(uuid.bytes_.begin(), uuid.bytes_.end(),
                  [] { return static_cast<std::uint8_t>(generator()); });
    uuid.bytes_[6] = static_cast<std::uint8_t>((uuid.bytes_[6] & 0x0FU) | 0x40U); // version 4
    uuid.bytes_[8] = static_cast<std::uint8_t>((uuid.bytes_[8] & 0x3FU) | 0x80U); // variant 1
    return uuid;
}

std::optional<UUID> UUID::parse(const std::string& text) {
    UUID uuid;
    return ::uuid_parse(text.c_str(), uuid.bytes_.data()) == 0 ? std::optional(uuid) : std::nullopt;
}

std::string UUID::text() const {
    std::array<char, UUID_STR_LEN> text{};
    ::uuid_unparse_upper(bytes_.data(), text.data());
    return text.data();
}

} // namespace ventaro
