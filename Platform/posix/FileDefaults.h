#pragma once

#include "DefaultsStore.h"

#include <filesystem>
#include <functional>
#include <map>

namespace ventaro {

/// A defaults store in a file: one CBOR map, whose types are the store's own. It is read once and
/// written as a whole, at once, whenever something changes, so that the file is always the last or
/// the one before it. One process at a time.
class FileDefaults final : public DefaultsStore {
public:
    using Log = std::function<void(const std::string& line)>;

    /// A missing file is an empty store. A damaged one, too: it is set aside with the extension
    /// ".damaged" when there is something to be saved. One that is there but cannot be read is
    /// never replaced. `log` takes English lines; without one they go to standard error.
    explicit FileDefaults(std::filesystem::path file, Log log = logToStandardError);

    std::optional<DefaultsValue> object(std::string_view key) const override;
    void store(const std::vector<Entry>& entries) override;

private:
    static void logToStandardError(const std::string& line);

    using Values = std::map<std::string, DefaultsValue, std::less<>>;

    void load();
    void save();
    void setDamagedFileAside();

    const std::filesystem::path file_;
    const Log log_;
    Values values_;
    bool isSaved_ = true;
    bool isDamaged_ = false;
    bool isUnreadable_ = false;
};

} // namespace ventaro
