#include "LinuxHostInformation.h"
#include "SystemHardwareInspector.h"

#include <benchmark/benchmark.h>
#include <unistd.h>

#include <fstream>
#include <iterator>
#include <string>

namespace ventaro {
namespace {

const std::vector<std::string> dataTypes{"SPHardwareDataType", "SPMemoryDataType",
                                         "SPDisplaysDataType", "SPNVMeDataType", "SPPowerDataType"};

/// A host whose profiler prints what it is given.
class DocumentHost final : public HostInformation {
public:
    std::optional<std::string> runProgram(const std::string& /*path*/,
                                          const std::vector<std::string>& /*arguments*/) override {
        return std::string(document);
    }
    void endPrograms() override {}
    std::optional<std::vector<std::uint8_t>> kernelValue(std::string_view /*name*/) override {
        return std::nullopt;
    }
    std::string operatingSystemVersion() override { return "Version 11.7"; }
    std::string document;
};

std::string simulatedProfile() {
    std::ifstream file(VENTARO_PROFILE_FILE);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// In MiB.
double residentMemory() {
    long ignored = 0;
    long pages = 0;
    std::ifstream("/proc/self/statm") >> ignored >> pages;
    constexpr double mebibyte = 1 << 20U;
    return static_cast<double>(pages * ::sysconf(_SC_PAGESIZE)) / mebibyte;
}

void BM_BuildSections(benchmark::State& state) {
    DocumentHost host;
    const SystemHardwareInspector inspector(host);
    const auto document = SystemHardwareInspector::parseProfilerDocument(simulatedProfile());
    for (auto _ : state) {
        benchmark::DoNotOptimize(inspector.buildSections(document));
    }
}
BENCHMARK(BM_BuildSections)->Unit(benchmark::kMicrosecond);

void BM_LinuxDocument(benchmark::State& state) {
    for (auto _ : state) {
        LinuxHostInformation host;
        benchmark::DoNotOptimize(host.runProgram("/usr/sbin/system_profiler", dataTypes));
    }
}
BENCHMARK(BM_LinuxDocument)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_HugeDocument(benchmark::State& state) {
    DocumentHost host;
    const std::string profile = simulatedProfile();
    host.document = "{\"junk\":[";
    while (host.document.size() < 50000000) {
        host.document += profile + ",";
    }
    host.document += "0]," + profile.substr(1);
    const SystemHardwareInspector inspector(host);
    const double before = residentMemory();
    for (auto _ : state) {
        benchmark::DoNotOptimize(inspector.loadAllHardwareSections());
    }
    state.counters["kept MiB"] = residentMemory() - before;
}
BENCHMARK(BM_HugeDocument)->Unit(benchmark::kMillisecond)->Iterations(1);

} // namespace
} // namespace ventaro
