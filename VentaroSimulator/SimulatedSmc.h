#pragma once

#include "Faults.h"
#include "IOKit.h"
#include "KeyTable.h"
#include "SMCKeyData.h"
#include "SimulatedFans.h"
#include "ThermalModel.h"
#include "Workload.h"

#include <chrono>
#include <cstdint>
#include <vector>

namespace ventaro {

struct SimulatedSmcOptions {
    SmcVariant variant = SmcVariant::t2;
    int fanCount = 2; ///< 0 to 3
    Workload workload = Workload::idle;
    std::uint64_t seed = 1;
};

/// The SMC of a simulated MacBook with the machine around it: it answers the driver's parameter
/// block from a key table whose sensors and fans live on a thermal model. Time moves on command.
/// Not thread-safe.
class SimulatedSmc {
public:
    /// The step of the model. Time in between is kept for the next one.
    static constexpr std::chrono::milliseconds quantum{50};

    /// A machine that has been busy with the workload for long.
    explicit SimulatedSmc(const SimulatedSmcOptions& options);

    /// Lets time pass up to `instant` after power-on; an earlier one changes nothing.
    void advanceTo(std::chrono::milliseconds instant);
    std::chrono::milliseconds now() const { return now_; }

    struct Answer {
        KernelReturn kernelReturn = KernelCode::success;
        SMCKeyData_t output{};
        std::chrono::milliseconds late{0}; ///< how long the answer is to be held back
    };
    /// One exchange. Only a `privileged` caller may write.
    Answer answer(std::uint32_t selector, const SMCKeyData_t& input, bool privileged);

    Faults& faults() { return faults_; }
    const Faults& faults() const { return faults_; }
    void setWorkload(Workload workload) { options_.workload = workload; }
    const ThermalModel& model() const { return model_; }
    const std::vector<SimulatedFan>& fans() const { return fans_; }

private:
    void warmUp();
    void step();
    void publishReadings();
    void publish(std::string_view key, double value);
    double value(std::string_view key);
    bool isForced(std::size_t fan);
    std::uint8_t read(KeyEntry& entry, const KeyFaults* faults, SMCKeyData_t& output);
    std::uint8_t write(KeyEntry& entry, const KeyFaults* faults, const SMCKeyData_t& input);
    std::uint8_t keyInfo(const KeyEntry& entry, const KeyFaults* faults,
                         SMCKeyData_t& output) const;
    std::uint8_t keyAtIndex(std::uint32_t index, SMCKeyData_t& output) const;

    SimulatedSmcOptions options_;
    KeyTable keys_;
    ThermalModel model_;
    std::vector<SimulatedFan> fans_;
    Faults faults_;
    std::chrono::milliseconds now_{0};
    bool readingsAreStale_ = true;
};

} // namespace ventaro
