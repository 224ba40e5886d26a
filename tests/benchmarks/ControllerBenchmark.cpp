#include "CompetingPrograms.h"
#include "FanControllerViewModel.h"
#include "HelperClient.h"
#include "InProcessIOKit.h"
#include "LinuxHostInformation.h"
#include "ManualSession.h"
#include "ProcessTable.h"
#include "SMCService.h"
#include "SystemHardwareInspector.h"
#include "ThreadTaskRunner.h"
#include "UserSession.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <algorithm>
#include <atomic>
#include <ctime>
#include <optional>

namespace ventaro {
namespace {

class MemoryDefaults final : public DefaultsStore {
public:
    std::optional<DefaultsValue> object(std::string_view /*key*/) const override { return {}; }
    void store(const std::vector<Entry>& /*entries*/) override {}
};

/// A controller on a machine in this process, without a helper.
struct Bench {
    Bench() {
        session.clock = std::make_unique<ManualClock>();
        session.defaults = std::make_unique<MemoryDefaults>();
        session.runningApplications = std::make_unique<ProcessTable>();
        controller.emplace(
            FanControllerDependencies{service, client, inspector, root, session, tasks});
        tasks.finishAll();
        ioKit.onExchange = [this](const SMCKeyData_t&) { ++exchanges; };
    }
    /// One tick with all that follows it: what it costs the main thread, in seconds.
    double tick() {
        bool published = false;
        QObject context;
        QObject::connect(&*controller, &FanControllerViewModel::historyChanged, &context,
                         [&published] { published = true; });
        static_cast<ManualClock&>(*session.clock).tick();
        const double before = mainThreadTime();
        while (!published) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
        const double cost = mainThreadTime() - before;
        tasks.finishAll();
        return cost;
    }
    static double mainThreadTime() {
        timespec time{};
        ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
    }

    SimulatedSmc smc{{}};
    InProcessIOKit ioKit{smc, false};
    SMCService service{ioKit};
    HelperClient client{"/nowhere/helper.sock"};
    LinuxHostInformation host;
    SystemHardwareInspector inspector{host};
    MachineRoot root;
    UserSession session;
    ThreadTaskRunner tasks;
    std::atomic<int> exchanges = 0;
    std::optional<FanControllerViewModel> controller;
};

void BM_FastTickNothingChanged(benchmark::State& state) {
    Bench bench;
    int signalled = 0;
    for (const auto signal :
         {&FanControllerViewModel::fansChanged, &FanControllerViewModel::sensorsChanged}) {
        QObject::connect(&*bench.controller, signal, [&signalled] { ++signalled; });
    }
    int exchanges = 0;
    for (auto _ : state) {
        while ((bench.controller->tickCount() + 1) % 3 == 1) {
            bench.tick(); // the full sweep is not meant
        }
        bench.exchanges = 0;
        state.SetIterationTime(bench.tick());
        exchanges = bench.exchanges;
    }
    state.counters["exchanges"] = exchanges;
    state.counters["fan and sensor signals"] = signalled;
}
BENCHMARK(BM_FastTickNothingChanged)->UseManualTime()->Unit(benchmark::kMicrosecond);

void BM_TickAllSensorsChanged(benchmark::State& state) {
    Bench bench;
    bench.controller->setSensorsTabVisible(true);
    int signalled = 0;
    QObject::connect(&*bench.controller, &FanControllerViewModel::sensorsChanged,
                     [&signalled] { ++signalled; });
    for (auto _ : state) {
        bench.smc.advanceTo(bench.smc.now() + std::chrono::seconds(2));
        state.SetIterationTime(bench.tick());
    }
    state.counters["sensor signals"] =
        benchmark::Counter(signalled, benchmark::Counter::kAvgIterations);
}
BENCHMARK(BM_TickAllSensorsChanged)->UseManualTime()->Unit(benchmark::kMicrosecond);

void BM_ProcessTableRefresh(benchmark::State& state) {
    ProcessTable table;
    table.refresh();
    for (auto _ : state) {
        table.refresh();
    }
    state.counters["applications"] = static_cast<double>(table.current()->size());
}
BENCHMARK(BM_ProcessTableRefresh)->Unit(benchmark::kMillisecond);

void BM_ConflictScan(benchmark::State& state) {
    const RunningApplications::List list(500, {"a program of usual length", "org.example.Program"});
    for (auto _ : state) {
        benchmark::DoNotOptimize(std::any_of(list.begin(), list.end(), isCompetingFanControl));
    }
}
BENCHMARK(BM_ConflictScan)->Unit(benchmark::kMicrosecond);

} // namespace
} // namespace ventaro

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
