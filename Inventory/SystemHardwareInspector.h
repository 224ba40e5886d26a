#pragma once

#include "HardwareSections.h"
#include "HostInformation.h"
#include "JsonObjectView.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ventaro {

/// The document that the system profiler prints: data types, each with an array of objects.
using ProfilerDocument = JsonValue::Object;

/// Builds the hardware inventory of the machine from the system profiler and the kernel's values.
/// What they do not tell is taken from the 16-inch MacBook Pro of 2019. Without state of its own:
/// any thread may call any operation.
class SystemHardwareInspector {
public:
    /// The process-wide instance, on the installed platform's session. Lives to the end of the
    /// process.
    static SystemHardwareInspector& shared();

    /// `host` must outlive the inspector.
    explicit SystemHardwareInspector(HostInformation& host) : host_(host) {}

    /// A fresh inventory: system, processor, memory, graphics, SSD, battery, each with identifiers
    /// of its own. Blocks while the profiler runs, which may take many seconds. Never throws.
    std::vector<HardwareSectionData> loadAllHardwareSections() const;
    /// The same from a document that is there already.
    std::vector<HardwareSectionData> buildSections(const ProfilerDocument& document) const;
    /// Ends a profiler that is running, and runs none any more.
    void endCollection() const { host_.endPrograms(); }

    /// The members of a profiler document that the inventory shows; empty for any other text.
    static ProfilerDocument parseProfilerDocument(std::string_view json);

    /// A named kernel value as text, up to its first zero byte and without white space around it;
    /// no value for an unknown name.
    std::optional<std::string> sysctlString(std::string_view name) const;
    /// A named kernel value of at most 64 bits as an integer; no value for an unknown name.
    std::optional<std::int64_t> sysctlInt64(std::string_view name) const;

private:
    ProfilerDocument fetchSystemProfilerJSON() const;
    HardwareSectionData buildSystemSection(const JsonObjectView& document) const;
    HardwareSectionData buildCPUSection(const JsonObjectView& document) const;
    HardwareSectionData buildRAMSection(const JsonObjectView& document) const;
    HardwareSectionData buildGPUSection(const JsonObjectView& document) const;
    HardwareSectionData buildSSDSection(const JsonObjectView& document) const;
    HardwareSectionData buildBatterySection(const JsonObjectView& document) const;

    HostInformation& host_;
};

} // namespace ventaro
