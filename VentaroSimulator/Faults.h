#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <optional>
#include <string_view>
#include <vector>

namespace ventaro {

/// What is wrong with one key.
struct KeyFaults {
    std::optional<std::uint8_t> readResult;    ///< reads fail with this SMC result
    std::optional<std::uint8_t> keyInfoResult; ///< key information fails with this SMC result
    std::optional<std::uint8_t> writeResult;   ///< writes fail with this SMC result
    std::optional<std::uint32_t> type;         ///< another type is reported
    std::optional<std::uint32_t> size;         ///< another size is reported
    std::optional<std::vector<std::uint8_t>> value;
    std::chrono::milliseconds late{0}; ///< every answer comes this much later
};

/// The faults of a machine. They can be changed while it runs.
class Faults {
public:
    /// One description, as in a line of a fault file (see `grammar`). Throws std::invalid_argument
    /// with an English sentence.
    void add(std::string_view line);
    /// Every line of a fault file; empty lines and lines that begin with "# " are skipped. Throws
    /// std::invalid_argument naming the line; then nothing is added.
    void addAll(std::string_view text);
    void clear() { *this = {}; }

    /// Null for a key without faults.
    const KeyFaults* find(std::uint32_t key) const;
    bool isServiceGone() const { return serviceGone_; }

    static const char* const grammar;

private:
    std::map<std::uint32_t, KeyFaults> keys_;
    bool serviceGone_ = false;
};

} // namespace ventaro
