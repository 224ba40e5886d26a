#include "InProcessIOKit.h"
#include "SMCService.h"

#include <benchmark/benchmark.h>

namespace ventaro {
namespace {

void BM_DecodeValue(benchmark::State& state) {
    const std::pair<const char*, SMCBytes> rows[] = {{"flt ", {0x00, 0x00, 0xC8, 0x42}},
                                                     {"sp78", {0x1C, 0x80}},
                                                     {"fpe2", {0x1C, 0x20}},
                                                     {"ui8 ", {0x01}},
                                                     {"ui32", {0x01}}};
    const auto& [type, bytes] = rows[state.range(0)];
    std::string name = type;
    for (auto _ : state) {
        benchmark::DoNotOptimize(name);
        benchmark::DoNotOptimize(SMCService::decodeValue(name, bytes));
    }
    state.SetLabel(type);
}
BENCHMARK(BM_DecodeValue)->DenseRange(0, 4);

/// The exchange that a cached read consists of, by itself.
void BM_Exchange(benchmark::State& state) {
    SimulatedSmc smc({});
    InProcessIOKit ioKit(smc, false);
    IOConnection connection = 0;
    ioKit.serviceOpen(ioKit.serviceGetMatchingService({"AppleSMC"}), 0, connection);
    SMCKeyData_t input{};
    input.key = SMCService::fourCharCode("TC0P");
    input.data8 = SMC_CMD_READ_BYTES;
    for (auto _ : state) {
        SMCKeyData_t output{};
        std::size_t size = sizeof output;
        benchmark::DoNotOptimize(ioKit.connectCallStructMethod(connection, KERNEL_INDEX_SMC, &input,
                                                               sizeof input, &output, size));
        benchmark::DoNotOptimize(output);
    }
}
BENCHMARK(BM_Exchange);

void BM_CachedReadKeyRaw(benchmark::State& state) {
    SimulatedSmc smc({});
    InProcessIOKit ioKit(smc, false);
    SMCService service(ioKit);
    for (auto _ : state) {
        benchmark::DoNotOptimize(service.readKeyRaw("TC0P"));
    }
}
BENCHMARK(BM_CachedReadKeyRaw);

void BM_WarmSensorSweep(benchmark::State& state) {
    SimulatedSmc smc({});
    InProcessIOKit ioKit(smc, false);
    SMCService service(ioKit);
    service.readSensors();
    std::int64_t exchanges = 0;
    ioKit.onExchange = [&](const SMCKeyData_t&) { ++exchanges; };
    for (auto _ : state) {
        benchmark::DoNotOptimize(service.readSensors());
    }
    state.counters["exchanges"] =
        benchmark::Counter(static_cast<double>(exchanges), benchmark::Counter::kAvgIterations);
}
BENCHMARK(BM_WarmSensorSweep);

} // namespace
} // namespace ventaro
