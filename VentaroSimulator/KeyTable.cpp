#include "KeyTable.h"

#include "SMCService.h"

#include <algorithm>
#include <charconv>
#include <sstream>
#include <stdexcept>

namespace ventaro {

namespace {

std::uint32_t code(std::string_view name) { return SMCService::fourCharCode(name); }

template<typename Number>
Number parseNumber(std::string_view digits, int base) {
    Number number{};
    const char* end = digits.data() + digits.size();
    const auto result = std::from_chars(digits.data(), end, number, base);
    if (result.ec != std::errc{} || result.ptr != end) {
        throw std::invalid_argument("\"" + std::string(digits) + "\" is no number");
    }
    return number;
}

/// "F0Ac ui16 80   2 0013" or "F0Ac ui16 80   2 !85"; keys and types may contain blanks.
KeyEntry parseRow(std::string_view line) {
    constexpr std::size_t typeColumn = 5;
    constexpr std::size_t attributeColumn = 10;
    constexpr std::size_t sizeColumn = 13;
    constexpr std::size_t valueColumn = 17;
    if (line.size() <= valueColumn) {
        throw std::invalid_argument("too short");
    }
    KeyEntry entry;
    entry.code = code(line.substr(0, 4));
    entry.type = code(line.substr(typeColumn, 4));
    entry.attributes = parseNumber<std::uint8_t>(line.substr(attributeColumn, 2), 16);
    std::string_view size = line.substr(sizeColumn, 3);
    size.remove_prefix(std::min(size.find_first_not_of(' '), size.size()));
    entry.size = parseNumber<std::uint32_t>(size, 10);
    const std::string_view value = line.substr(valueColumn);
    if (value.front() == '!') {
        entry.readRefusal = parseNumber<std::uint8_t>(value.substr(1), 16);
    } else {
        entry.bytes = parseHexBytes(value);
        if (entry.bytes.size() != entry.size) {
            throw std::invalid_argument("the value has another size");
        }
    }
    return entry;
}

bool isFanKey(std::string_view key) { return key[0] == 'F' && key[1] >= '0' && key[1] <= '9'; }

KeyEntry renamed(KeyEntry entry, int fan) {
    std::string name = SMCService::fourCharString(entry.code);
    name[1] = static_cast<char>('0' + fan);
    entry.code = code(name);
    return entry;
}

} // namespace

std::vector<std::uint8_t> parseHexBytes(std::string_view digits) {
    if (digits.size() % 2 != 0) {
        throw std::invalid_argument("\"" + std::string(digits) + "\" is half a byte short");
    }
    std::vector<std::uint8_t> bytes;
    for (std::size_t index = 0; index < digits.size(); index += 2) {
        bytes.push_back(parseNumber<std::uint8_t>(digits.substr(index, 2), 16));
    }
    return bytes;
}

KeyTable::KeyTable(std::string_view text) {
    std::istringstream lines{std::string(text)};
    std::string line;
    for (int number = 1; std::getline(lines, line); ++number) {
        // "#KEY" is a key; a comment has a blank behind the sign.
        if (line.empty() || line.starts_with("# ")) {
            continue;
        }
        try {
            KeyEntry entry = parseRow(line);
            if (find(entry.code) != nullptr) {
                throw std::invalid_argument("the key occurs twice");
            }
            add(std::move(entry));
        } catch (const std::invalid_argument& error) {
            throw std::runtime_error("key table, line " + std::to_string(number) + ": " +
                                     error.what());
        }
    }
}

void KeyTable::add(KeyEntry entry) {
    indices_[entry.code] = entries_.size();
    entries_.push_back(std::move(entry));
}

KeyEntry* KeyTable::find(std::uint32_t code) {
    const auto found = indices_.find(code);
    return found == indices_.end() ? nullptr : &entries_[found->second];
}

void KeyTable::adapt(SmcVariant variant, int fanCount) {
    const std::vector<KeyEntry> original = std::move(entries_);
    entries_.clear();
    indices_.clear();
    for (const KeyEntry& entry : original) {
        const std::string key = SMCService::fourCharString(entry.code);
        if (!isFanKey(key)) {
            add(entry);
            continue;
        }
        const int fan = key[1] - '0';
        const bool isMode = key.ends_with("Md");
        if (fan >= fanCount || (isMode && variant == SmcVariant::legacy)) {
            continue;
        }
        KeyEntry adapted = entry;
        if (variant == SmcVariant::legacy && entry.type == code("flt ")) {
            const auto value = SMCService::decodeValue("flt ", entry.bytes);
            const SMCBytes bytes = SMCService::encodeValue("fpe2", value.value_or(0));
            adapted.type = code("fpe2");
            adapted.size = static_cast<std::uint32_t>(bytes.size());
            adapted.bytes = {bytes[0], bytes[1]};
        }
        add(adapted);
        // The real machine has two fans; a third is a second right one.
        constexpr int rightFan = 1;
        for (int extra = 2; fan == rightFan && extra < fanCount; ++extra) {
            add(renamed(adapted, extra));
        }
    }
    if (variant == SmcVariant::legacy) {
        add({code("FS! "), code("ui16"), KeyEntry::readable | KeyEntry::writable, 2, 0, {0, 0}});
    }
    find(code("FNum"))->bytes = {static_cast<std::uint8_t>(fanCount)};
    const auto count = static_cast<std::uint32_t>(entries_.size());
    find(code("#KEY"))->bytes = {
        static_cast<std::uint8_t>(count >> 24U), static_cast<std::uint8_t>(count >> 16U),
        static_cast<std::uint8_t>(count >> 8U), static_cast<std::uint8_t>(count)};
}

} // namespace ventaro
