#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace ventaro {

/// The named kernel values of a machine, each as the bytes that `sysctlbyname` gives.
class KernelValues {
public:
    /// A line per value: name, type ("string", "int32", "int64"), value. Empty lines and lines that
    /// begin with "# " are skipped. Throws std::runtime_error naming the line that is wrong.
    explicit KernelValues(std::string_view table);

    std::optional<std::string> find(std::string_view name) const;

private:
    std::map<std::string, std::string, std::less<>> values_;
};

} // namespace ventaro
