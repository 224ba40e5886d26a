#include "FileDefaults.h"

#include "AtomicFile.h"
#include "FileDescriptor.h"

#include <fcntl.h>
#include <nlohmann/json.hpp>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

namespace ventaro {

namespace {

using nlohmann::json;
namespace fs = std::filesystem;

/// Takes one flat map. A value of a type that the store does not know is left out; one that is
/// nested deeper than any that is meant ends the parsing, which goes down on the stack.
class FlatMapCollector final : public nlohmann::json_sax<json> {
public:
    explicit FlatMapCollector(std::map<std::string, DefaultsValue, std::less<>>& values)
        : values_(values) {}

    bool null() override { return depth_ > 0; }
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
    bool start_object(std::size_t /*size*/) override { return enter(); }
    bool end_object() override { return leave(); }
    bool start_array(std::size_t /*size*/) override { return depth_ > 0 && enter(); }
    bool end_array() override { return leave(); }
    bool key(string_t& name) override {
        if (depth_ == 1) {
            key_ = std::move(name);
        }
        return true;
    }
    bool parse_error(std::size_t /*position*/, const std::string& /*token*/,
                     const json::exception& /*exception*/) override {
        return false;
    }

private:
    bool enter() {
        constexpr int deepest = 8;
        return ++depth_ <= deepest;
    }
    bool leave() {
        --depth_;
        return true;
    }
    bool keep(DefaultsValue value) {
        if (depth_ == 1) {
            values_.insert_or_assign(key_, std::move(value));
        }
        return depth_ > 0;
    }

    std::map<std::string, DefaultsValue, std::less<>>& values_;
    std::string key_;
    int depth_ = 0;
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

void FileDefaults::logToStandardError(const std::string& line) {
    std::fprintf(stderr, "ventaro: %s\n", line.c_str());
}

FileDefaults::FileDefaults(fs::path file, Log log) : file_(std::move(file)), log_(std::move(log)) {
    load();
}

void FileDefaults::load() {
    constexpr std::size_t largest = 1 << 20U; // bytes; far more than all settings take
    // Not blocking, for there may be anything in the file's place.
    const FileDescriptor file(::open(file_.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!file && (errno == ENOENT || errno == ENOTDIR)) {
        return;
    }
    struct stat status {};
    std::string text(largest + 1, '\0');
    ssize_t size = -1;
    if (file && ::fstat(file.get(), &status) == 0 && S_ISREG(status.st_mode)) {
        size = ::read(file.get(), text.data(), text.size());
    }
    if (size < 0) {
        isUnreadable_ = true;
        log_("the settings in " + file_.string() +
             " cannot be read; starting without them, and nothing is saved");
        return;
    }
    text.resize(static_cast<std::size_t>(size));
    Values values;
    FlatMapCollector collector(values);
    if (text.size() <= largest &&
        json::sax_parse(text.begin(), text.end(), &collector, json::input_format_t::cbor)) {
        values_ = std::move(values);
        return;
    }
    isDamaged_ = true;
    log_("the settings in " + file_.string() + " are damaged; starting without them");
}

void FileDefaults::setDamagedFileAside() {
    fs::path aside = file_;
    aside += ".damaged";
    std::error_code error;
    fs::rename(file_, aside, error);
    if (!error) {
        isDamaged_ = false;
        log_("the damaged settings are now " + aside.string());
    }
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
    if (!isSaved_ && !isUnreadable_) {
        save();
    }
}

void FileDefaults::save() {
    constexpr mode_t ownerOnly = 0600;
    if (isDamaged_) {
        setDamagedFileAside();
    }
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
