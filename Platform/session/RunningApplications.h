#pragma once

#include <memory>
#include <string>
#include <vector>

namespace ventaro {

/// One running application; empty texts for what it does not have.
struct RunningApplication {
    std::string localizedName;
    std::string bundleIdentifier;
};

/// The applications that run on the machine, but for this one. Any thread.
class RunningApplications {
public:
    using List = std::vector<RunningApplication>;

    virtual ~RunningApplications() = default;
    /// Looks at the machine anew. May take milliseconds, so not on the main thread.
    virtual void refresh() = 0;
    /// What the last `refresh` saw. Quick.
    virtual std::shared_ptr<const List> current() const = 0;
};

} // namespace ventaro
