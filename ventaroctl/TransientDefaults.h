#pragma once

#include "DefaultsStore.h"

#include <map>
#include <memory>

namespace ventaro {

/// A defaults store that begins with what another one holds and keeps every change to itself.
class TransientDefaults final : public DefaultsStore {
public:
    explicit TransientDefaults(std::unique_ptr<DefaultsStore> base) : base_(std::move(base)) {}

    std::optional<DefaultsValue> object(std::string_view key) const override {
        const auto changed = changes_.find(key);
        return changed != changes_.end() ? std::optional(changed->second) : base_->object(key);
    }
    void store(const std::vector<Entry>& entries) override {
        for (const auto& [key, value] : entries) {
            changes_.insert_or_assign(key, value);
        }
    }

private:
    const std::unique_ptr<const DefaultsStore> base_;
    std::map<std::string, DefaultsValue, std::less<>> changes_;
};

} // namespace ventaro
