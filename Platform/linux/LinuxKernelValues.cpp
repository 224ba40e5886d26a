#include "LinuxKernelValues.h"

#include <charconv>
#include <cmath>
#include <cstring>
#include <set>
#include <sstream>
#include <string>
#include <utility>

namespace ventaro {

namespace {

using Bytes = std::vector<std::uint8_t>;

std::optional<Bytes> textBytes(const std::optional<std::string>& text) {
    if (!text) {
        return std::nullopt;
    }
    Bytes bytes(text->begin(), text->end());
    bytes.push_back(0);
    return bytes;
}

std::optional<Bytes> integerBytes(std::optional<std::int64_t> value) {
    if (!value) {
        return std::nullopt;
    }
    Bytes bytes(sizeof *value);
    std::memcpy(bytes.data(), &*value, sizeof *value);
    return bytes;
}

/// /proc/cpuinfo: the fields of the first processor, and how many there are.
struct ProcessorTable {
    explicit ProcessorTable(const HostTree& host) {
        std::istringstream lines(host.bytes("/proc/cpuinfo").value_or(""));
        std::pair<std::string, std::string> core;
        for (std::string line; std::getline(lines, line);) {
            const std::size_t colon = line.find(':');
            const std::size_t nameEnd = line.substr(0, colon).find_last_not_of(" \t");
            if (colon == std::string::npos || nameEnd == std::string::npos) {
                continue;
            }
            const std::string name = line.substr(0, nameEnd + 1);
            const std::string value =
                colon + 2 <= line.size() ? line.substr(colon + 2) : std::string();
            first.try_emplace(name, value);
            if (name == "processor") {
                ++threads;
            } else if (name == "physical id") {
                core.first = value;
            } else if (name == "core id") {
                core.second = value;
                cores.insert(core);
            }
        }
    }
    std::optional<std::string> text(const std::string& field) const {
        const auto found = first.find(field);
        return found == first.end() ? std::nullopt : std::optional(found->second);
    }
    std::optional<std::int64_t> number(const std::string& field) const {
        const auto digits = text(field);
        return digits ? parseInteger(*digits) : std::nullopt;
    }

    std::map<std::string, std::string> first;
    std::set<std::pair<std::string, std::string>> cores; ///< package and core
    std::int64_t threads = 0;
};

/// A product of what files say; no value for one that is not positive or has no room.
std::optional<std::int64_t> product(std::optional<std::int64_t> left, std::int64_t right) {
    std::int64_t value = 0;
    return left && *left > 0 && right > 0 && !__builtin_mul_overflow(*left, right, &value)
               ? std::optional(value)
               : std::nullopt;
}

/// "32K" or "1M" in bytes.
std::optional<std::int64_t> parseCacheSize(std::string text) {
    constexpr std::int64_t kilobyte = 1024;
    std::int64_t unit = 1;
    if (!text.empty() && (text.back() == 'K' || text.back() == 'M')) {
        unit = text.back() == 'K' ? kilobyte : kilobyte * kilobyte;
        text.pop_back();
    }
    return product(parseInteger(text), unit);
}

std::optional<std::int64_t> cacheSize(const HostTree& host, const char* level, const char* type) {
    for (const auto& cache : host.entries("/sys/devices/system/cpu/cpu0/cache", "index")) {
        const auto kind = host.text(cache / "type");
        if (host.text(cache / "level") == level && (kind == type || kind == "Unified")) {
            return parseCacheSize(host.text(cache / "size").value_or(""));
        }
    }
    return std::nullopt;
}

/// The number that `text` begins with, times `factor`; no value if it begins with none.
std::optional<std::int64_t> scaled(std::string_view text, double factor) {
    constexpr double largest = 1e12; // Hz; no processor's
    double value = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    const double hertz = value * factor;
    return result.ec == std::errc{} && hertz > 0 && hertz < largest
               ? std::optional(static_cast<std::int64_t>(std::llround(hertz)))
               : std::nullopt;
}

/// In Hz: the guaranteed frequency, else the one in the processor's name, else the highest, else
/// what the kernel measured at its start.
std::optional<std::int64_t> frequency(const HostTree& host, const ProcessorTable& table) {
    constexpr std::int64_t kilohertz = 1000;
    constexpr std::int64_t megahertz = 1000 * kilohertz;
    constexpr double gigahertz = 1e9;
    const std::filesystem::path cpu = "/sys/devices/system/cpu/cpu0";
    if (const auto guaranteed = product(host.number(cpu / "cpufreq/base_frequency"), kilohertz)) {
        return guaranteed;
    }
    if (const auto nominal = product(host.number(cpu / "acpi_cppc/nominal_freq"), megahertz)) {
        return nominal;
    }
    const std::string name = table.text("model name").value_or("");
    if (const std::size_t at = name.find("@ "); at != std::string::npos) {
        if (const auto named = scaled(std::string_view(name).substr(at + 2), gigahertz)) {
            return named;
        }
    }
    if (const auto highest = product(host.number(cpu / "cpufreq/cpuinfo_max_freq"), kilohertz)) {
        return highest;
    }
    return scaled(table.text("cpu MHz").value_or(""), static_cast<double>(megahertz));
}

/// The memory that is installed, in bytes: the kernel's own count leaves out what it has reserved.
std::optional<std::int64_t> memorySize(const HostTree& host) {
    constexpr int hexadecimal = 16;
    const std::filesystem::path folder = "/sys/devices/system/memory";
    const auto blockSize =
        parseInteger(host.text(folder / "block_size_bytes").value_or(""), hexadecimal);
    std::int64_t blocks = 0;
    for (const auto& entry : host.entries(folder, "memory")) {
        const std::string name = entry.filename();
        blocks += parseInteger(std::string_view(name).substr(std::strlen("memory"))) ? 1 : 0;
    }
    return product(blockSize, blocks);
}

std::optional<std::int64_t> coreCount(const HostTree& host, const ProcessorTable& table) {
    std::set<std::pair<std::string, std::string>> cores; // package and core
    for (const auto& cpu : host.entries("/sys/devices/system/cpu", "cpu")) {
        if (const auto core = host.text(cpu / "topology/core_id")) {
            cores.emplace(host.text(cpu / "topology/physical_package_id").value_or(""), *core);
        }
    }
    const std::size_t count = cores.empty() ? table.cores.size() : cores.size();
    return count == 0 ? table.number("cpu cores") : std::optional(static_cast<std::int64_t>(count));
}

std::optional<std::int64_t> microcode(const HostTree& host, const ProcessorTable& table) {
    constexpr int hexadecimal = 16;
    auto text = host.text("/sys/devices/system/cpu/cpu0/microcode/version");
    if (!text) {
        text = table.text("microcode");
    }
    return text && text->starts_with("0x") ? parseInteger(text->substr(2), hexadecimal)
                                           : std::nullopt;
}

} // namespace

LinuxKernelValues readLinuxKernelValues(const HostTree& host) {
    const ProcessorTable table(host);
    const std::pair<const char*, std::optional<Bytes>> sources[] = {
        {"hw.model", textBytes(host.text("/sys/class/dmi/id/product_name"))},
        {"hw.memsize", integerBytes(memorySize(host))},
        {"hw.cpufrequency_max", integerBytes(frequency(host, table))},
        {"hw.l1icachesize", integerBytes(cacheSize(host, "1", "Instruction"))},
        {"hw.l1dcachesize", integerBytes(cacheSize(host, "1", "Data"))},
        {"hw.l2cachesize", integerBytes(cacheSize(host, "2", "Unified"))},
        {"hw.l3cachesize", integerBytes(cacheSize(host, "3", "Unified"))},
        {"machdep.cpu.brand_string", textBytes(table.text("model name"))},
        {"machdep.cpu.vendor", textBytes(table.text("vendor_id"))},
        {"machdep.cpu.family", integerBytes(table.number("cpu family"))},
        {"machdep.cpu.model", integerBytes(table.number("model"))},
        {"machdep.cpu.stepping", integerBytes(table.number("stepping"))},
        {"machdep.cpu.core_count", integerBytes(coreCount(host, table))},
        {"machdep.cpu.thread_count",
         table.threads > 0 ? integerBytes(table.threads) : std::nullopt},
        {"machdep.cpu.microcode_version", integerBytes(microcode(host, table))},
    };
    LinuxKernelValues values;
    for (const auto& [name, bytes] : sources) {
        if (bytes) {
            values.emplace(name, *bytes);
        }
    }
    return values;
}

} // namespace ventaro
