#include "FileDefaults.h"

#include "AtomicFile.h"

#include <nlohmann/json.hpp>

#include <fstream>
#include <iterator>

namespace ventaro {

namespace {

using nlohmann::json;
namespace fs = std::filesystem;

/// Takes one flat map. Anything nested ends the parsing, so that no depth is ever reached; a value
/// of a type that the store does not know is left out.
class FlatMapCollector final : public nlohmann::json_sax<json> {
public:
    explicit FlatMapCollector(std::map<std::string, DefaultsValue, std::less<>>& values)
        : values_(values) {}

    bool null() override { return isInMap_; }
    bool boolean(bool value) override { return keep(value); }
    bool number_integer(number_integer_t value) override {
        return keep(static_cast<double>(value));
    }
    bool number_unsigned(number_unsigned_t value) override {
        return keep(static_cast<double>(value));
    }
    bool number_float(number_float_t value, const string_t& /*text*/) override {
        return keep(value);
    }
    bool string(string_t& value) override { return keep(std::move(value)); }
    bool binary(binary_t& value) override { return keep(DefaultsData(value.begin(), value.end())); }
    bool start_object(std::size_t /*size*/) override {
        const bool isOutermost = !isInMap_;
        isInMap_ = true;
        return isOutermost;
    }
    bool end_object() override { return true; }
    bool start_array(std::size_t /*size*/) override { return false; }
    bool end_array() override { return false; }
    bool key(string_t& name) override {
        key_ = std::move(name);
        return true;
    }
    bool parse_error(std::size_t /*position*/, const std::string& /*token*/,
                     const json::exception& /*exception*/) override {
        return false;
    }

private:
    bool keep(DefaultsValue value) {
        if (isInMap_) {
            values_.insert_or_assign(key_, std::move(value));
        }
        return isInMap_;
    }

    std::map<std::string, DefaultsValue, std::less<>>& values_;
    std::string key_;
    bool isInMap_ = false;
};

json toJson(const DefaultsValue& value) {
    if (const auto* data = std::get_if<DefaultsData>(&value)) {
        return json::binary(*data);
    }
    if (const auto* text = std::get_if<std::string>(&value)) {
        return *text;
    }
    if (const auto* number = std::get_if<double>(&value)) {
        return *number;
    }
    return std::get<bool>(value);
}

} // namespace

FileDefaults::FileDefaults(fs::path file, Log log) : file_(std::move(file)), log_(std::move(log)) {
    load();
}

void FileDefaults::load() {
    constexpr std::size_t largest = 1 << 20U; // bytes; far more than all settings take
    std::error_code error;
    if (!fs::exists(file_, error)) {
        return;
    }
    std::ifstream stream(file_, std::ios::binary);
    std::string text(largest + 1, '\0');
    stream.read(text.data(), static_cast<std::streamsize>(text.size()));
    text.resize(static_cast<std::size_t>(stream.gcount()));
    Values values;
    FlatMapCollector collector(values);
    if (text.size() <= largest &&
        json::sax_parse(text.begin(), text.end(), &collector, json::input_format_t::cbor)) {
        values_ = std::move(values);
        return;
    }
    fs::path aside = file_;
    aside += ".damaged";
    fs::rename(file_, aside, error);
    log_("the settings in " + file_.string() + " cannot be read; starting with none" +
         (error ? "" : ", the file is now " + aside.string()));
}

std::optional<DefaultsValue> FileDefaults::object(std::string_view key) const {
    const auto found = values_.find(key);
    return found == values_.end() ? std::nullopt : std::optional(found->second);
}

void FileDefaults::store(const std::vector<Entry>& entries) {
    for (const auto& [key, value] : entries) {
        auto& held = values_.try_emplace(key).first->second;
        if (held != value) {
            isSaved_ = false;
            held = value;
        }
    }
    if (!isSaved_) {
        save();
    }
}

void FileDefaults::save() {
    constexpr mode_t ownerOnly = 0600;
    try {
        json map = json::object();
        for (const auto& [key, value] : values_) {
            map[key] = toJson(value);
        }
        const std::vector<std::uint8_t> bytes = json::to_cbor(map);
        createFolders(file_.parent_path());
        writeFileAtomically(file_, {reinterpret_cast<const char*>(bytes.data()), bytes.size()},
                            ownerOnly);
        isSaved_ = true;
    } catch (const std::exception& error) {
        log_(std::string("the settings were not saved: ") + error.what());
    }
}

} // namespace ventaro
