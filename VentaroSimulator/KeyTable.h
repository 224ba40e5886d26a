#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace ventaro {

/// Which generation of fan control the machine has.
enum class SmcVariant {
    t2,     ///< a mode key per fan, "flt " fan values
    legacy, ///< one force mask "FS! " for all fans, "fpe2" fan values
};

/// One SMC key with its value at power-on.
struct KeyEntry {
    static constexpr std::uint8_t readable = 0x80;
    static constexpr std::uint8_t writable = 0x40;

    std::uint32_t code = 0;
    std::uint32_t type = 0;
    std::uint8_t attributes = 0;
    std::uint32_t size = 0;          ///< bytes, as key information reports it
    std::uint8_t readRefusal = 0;    ///< result byte with which a read is refused; 0: it is not
    std::vector<std::uint8_t> bytes; ///< `size` of them unless reads are refused
};

/// The keys of a machine, in the SMC's order.
class KeyTable {
public:
    /// Throws std::runtime_error naming the line that is wrong.
    explicit KeyTable(std::string_view text);

    /// Turns the table into that of a machine with `fanCount` fans (0 to 3) of the given
    /// generation, and brings "FNum" and "#KEY" in line with it.
    void adapt(SmcVariant variant, int fanCount);

    KeyEntry* find(std::uint32_t code);
    const std::vector<KeyEntry>& entries() const { return entries_; }

private:
    void add(KeyEntry entry);

    std::vector<KeyEntry> entries_;
    std::unordered_map<std::uint32_t, std::size_t> indices_;
};

/// The bytes of a text of hexadecimal digit pairs. Throws std::invalid_argument.
std::vector<std::uint8_t> parseHexBytes(std::string_view digits);

} // namespace ventaro
