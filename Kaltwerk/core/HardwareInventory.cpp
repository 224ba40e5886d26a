#include "HardwareInventory.h"

#include "StoredField.h"
#include "SystemHardwareInspector.h"

namespace ventaro {

HardwareInventory::HardwareInventory(const SystemHardwareInspector& inspector, TaskRunner& tasks)
    : inspector_(inspector), tasks_(tasks) {}

void HardwareInventory::ensureLoaded() {
    if (sections_.empty()) {
        reload();
    }
}

void HardwareInventory::reload() {
    if (isLoading_) {
        return;
    }
    store(this, isLoading_, true, &HardwareInventory::isLoadingChanged);
    tasks_.run(
        TaskPriority::utility,
        [&inspector = inspector_] { return inspector.loadAllHardwareSections(); },
        [this](const std::vector<HardwareSectionData>& sections) {
            store(this, sections_, sections, &HardwareInventory::sectionsChanged);
            store(this, isLoading_, false, &HardwareInventory::isLoadingChanged);
        });
}

void HardwareInventory::endCollection() const { inspector_.endCollection(); }

} // namespace ventaro
