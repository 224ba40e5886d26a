#pragma once

#include "DetachedTasks.h"
#include "HardwareSections.h"

#include <QObject>
#include <vector>

namespace ventaro {

class SystemHardwareInspector;

/// The hardware inventory, loaded beside the main thread when somebody wants to see it. Main thread
/// only.
class HardwareInventory : public QObject {
    Q_OBJECT

public:
    /// Both must outlive the inventory and the tasks it has started.
    HardwareInventory(const SystemHardwareInspector& inspector, TaskRunner& tasks);

    const std::vector<HardwareSectionData>& sections() const { return sections_; }
    bool isLoading() const { return isLoading_; }

    /// Loads it unless it is there.
    void ensureLoaded();
    /// Loads it anew unless it is being loaded.
    void reload();
    /// Ends what is running for it, and loads nothing any more.
    void endCollection() const;

Q_SIGNALS:
    void sectionsChanged();
    void isLoadingChanged();

private:
    const SystemHardwareInspector& inspector_;
    std::vector<HardwareSectionData> sections_;
    bool isLoading_ = false;
    DetachedTasks tasks_;
};

} // namespace ventaro
