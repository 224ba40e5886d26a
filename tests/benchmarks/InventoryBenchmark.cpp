#include "BlankHost.h"
#include "EmbeddedFiles.h"
#include "LinuxHostInformation.h"

#include <benchmark/benchmark.h>
#include <unistd.h>

#include <fstream>

namespace ventaro {
namespace {

/// In MiB.
double residentMemory() {
    long ignored = 0;
    long pages = 0;
    std::ifstream("/proc/self/statm") >> ignored >> pages;
    constexpr double mebibyte = 1 << 20U;
    return static_cast<double>(pages * ::sysconf(_SC_PAGESIZE)) / mebibyte;
}

void BM_BuildSections(benchmark::State& state) {
    BlankHost host;
    const SystemHardwareInspector inspector(host);
    const auto document =
        SystemHardwareInspector::parseProfilerDocument(std::string(EmbeddedFiles::profile));
    for (auto _ : state) {
        benchmark::DoNotOptimize(inspector.buildSections(document));
    }
}
BENCHMARK(BM_BuildSections)->Unit(benchmark::kMicrosecond);

void BM_LinuxDocument(benchmark::State& state) {
    for (auto _ : state) {
        LinuxHostInformation host;
        benchmark::DoNotOptimize(
            host.runProgram("/usr/sbin/system_profiler",
                            {"SPHardwareDataType", "SPMemoryDataType", "SPDisplaysDataType",
                             "SPNVMeDataType", "SPPowerDataType"}));
    }
}
BENCHMARK(BM_LinuxDocument)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_HugeDocument(benchmark::State& state) {
    BlankHost host;
    const std::string profile(EmbeddedFiles::profile);
    std::string document = "{\"junk\":[";
    while (document.size() < 50000000) {
        document += profile + ",";
    }
    host.document = document + "0]," + profile.substr(1);
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
