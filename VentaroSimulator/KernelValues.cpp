#include "KernelValues.h"

#include "NumberParse.h"

#include <cstdint>
#include <cstring>
#include <sstream>
#include <stdexcept>

namespace ventaro {

namespace {

template<typename Integer>
std::string integerBytes(const std::string& text) {
    const auto value = parseNumber<Integer>(text);
    if (!value) {
        throw std::runtime_error("\"" + text + "\" is no such integer");
    }
    std::string bytes(sizeof(Integer), '\0');
    std::memcpy(bytes.data(), &*value, sizeof(Integer));
    return bytes;
}

std::string bytesOf(const std::string& type, const std::string& value) {
    if (type == "string") {
        return value + '\0';
    }
    if (type == "int32") {
        return integerBytes<std::int32_t>(value);
    }
    if (type == "int64") {
        return integerBytes<std::int64_t>(value);
    }
    throw std::runtime_error("\"" + type + "\" is no type");
}

} // namespace

KernelValues::KernelValues(std::string_view table) {
    std::istringstream lines{std::string(table)};
    for (std::string line; std::getline(lines, line);) {
        if (line.empty() || line.starts_with("# ")) {
            continue;
        }
        std::istringstream words(line);
        std::string name;
        std::string type;
        std::string value;
        words >> name >> type >> std::ws;
        std::getline(words, value);
        try {
            values_[name] = bytesOf(type, value);
        } catch (const std::runtime_error& error) {
            throw std::runtime_error("kernel value \"" + line + "\": " + error.what());
        }
    }
}

std::optional<std::string> KernelValues::find(std::string_view name) const {
    const auto found = values_.find(name);
    return found == values_.end() ? std::nullopt : std::optional(found->second);
}

} // namespace ventaro
