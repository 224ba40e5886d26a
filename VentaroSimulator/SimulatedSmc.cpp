#include "SimulatedSmc.h"

#include "EmbeddedFiles.h"
#include "LiveSensors.h"
#include "SMCService.h"

#include <algorithm>
#include <stdexcept>

namespace ventaro {

namespace {

// Result bytes of the SMC, as real machines answer them.
constexpr std::uint8_t resultSuccess = 0x00;
constexpr std::uint8_t resultBadCommand = 0x82;
constexpr std::uint8_t resultKeyNotFound = 0x84;
constexpr std::uint8_t resultNotReadable = 0x85;
constexpr std::uint8_t resultNotWritable = 0x86;
constexpr std::uint8_t resultSizeMismatch = 0x87;
constexpr std::uint8_t resultTooLong = 0xFF;

constexpr int mostFans = 3;

std::string fanKey(std::size_t fan, const char* suffix) {
    return "F" + std::to_string(fan) + suffix;
}

} // namespace

SimulatedSmc::SimulatedSmc(const SimulatedSmcOptions& options)
    : options_(options), keys_(EmbeddedFiles::keyTable), model_(ThermalModel::idling()) {
    if (options.fanCount < 0 || options.fanCount > mostFans) {
        throw std::invalid_argument("a simulated machine has 0 to 3 fans");
    }
    keys_.adapt(options.variant, options.fanCount);
    for (std::size_t fan = 0; fan < static_cast<std::size_t>(options.fanCount); ++fan) {
        const double minimum = value(fanKey(fan, "Mn"));
        fans_.push_back({.minimum = minimum,
                         .maximum = value(fanKey(fan, "Mx")),
                         .speed = minimum,
                         .target = minimum});
    }
    warmUp();
}

void SimulatedSmc::warmUp() {
    // The idle model starts in its steady state; any other workload gets half an hour to reach its.
    const std::chrono::milliseconds time =
        options_.workload == Workload::idle ? quantum : std::chrono::minutes(30);
    advanceTo(time);
    now_ = std::chrono::milliseconds(0);
}

double SimulatedSmc::value(std::string_view key) {
    const KeyEntry* entry = keys_.find(SMCService::fourCharCode(key));
    return entry == nullptr
               ? 0
               : SMCService::decodeValue(SMCService::fourCharString(entry->type), entry->bytes)
                     .value_or(0);
}

void SimulatedSmc::publish(std::string_view key, double value) {
    KeyEntry* entry = keys_.find(SMCService::fourCharCode(key));
    if (entry == nullptr) {
        return;
    }
    const std::string type = SMCService::fourCharString(entry->type);
    if (type == "sp78") { // only the SMC itself writes this type
        const auto fixed = static_cast<std::int16_t>(std::clamp(value, -127.0, 127.0) * 256);
        entry->bytes = {static_cast<std::uint8_t>(static_cast<std::uint16_t>(fixed) >> 8U),
                        static_cast<std::uint8_t>(fixed)};
        return;
    }
    const SMCBytes bytes = SMCService::encodeValue(type, value);
    const std::span<const std::uint8_t> span = bytes;
    entry->bytes.assign(span.begin(), span.end());
}

bool SimulatedSmc::isForced(std::size_t fan) {
    if (options_.variant == SmcVariant::t2) {
        return value(fanKey(fan, "Md")) == 1;
    }
    return ((static_cast<unsigned>(value("FS! ")) >> fan) & 1U) != 0;
}

void SimulatedSmc::advanceTo(std::chrono::milliseconds instant) {
    while (now_ + quantum <= instant) {
        now_ += quantum;
        step();
    }
}

void SimulatedSmc::step() {
    const double seconds = std::chrono::duration<double>(quantum).count();
    const double share = automaticShare(model_.temperature(ThermalNode::cpuDie),
                                        model_.temperature(ThermalNode::gpuDie));
    for (std::size_t index = 0; index < fans_.size(); ++index) {
        SimulatedFan& fan = fans_[index];
        fan.forced = isForced(index);
        fan.target = fan.forced ? value(fanKey(index, "Tg"))
                                : fan.minimum + share * (fan.maximum - fan.minimum);
        fan.step(seconds);
        if (!fan.forced) {
            publish(fanKey(index, "Tg"), fan.target);
        }
    }
    // A third fan blows over the right fins, too.
    const double left = fans_.empty() ? 0 : fans_[0].speed;
    double right = 0;
    for (std::size_t index = 1; index < fans_.size(); ++index) {
        right += fans_[index].speed;
    }
    const double time = std::chrono::duration<double>(now_).count();
    model_.step(seconds, demandOf(options_.workload, time, options_.seed), left, right);
    readingsAreStale_ = true;
}

void SimulatedSmc::publishReadings() {
    if (!readingsAreStale_) {
        return;
    }
    readingsAreStale_ = false;
    // Readings change four times a second, however small the model's step.
    const auto instant = now_ / std::chrono::milliseconds(250);
    computeSensors(model_, options_.seed, instant,
                   [this](std::string_view key, double value) { publish(key, value); });
    constexpr double tachometerNoise = 6; // RPM
    constexpr std::uint64_t fanStream = 50;
    for (std::size_t index = 0; index < fans_.size(); ++index) {
        const double noise = tachometerNoise * noiseAt(options_.seed, fanStream + index, instant);
        publish(fanKey(index, "Ac"), std::max(0.0, fans_[index].speed + noise));
    }
}

SimulatedSmc::Answer SimulatedSmc::answer(std::uint32_t selector, const SMCKeyData_t& input,
                                          bool privileged) {
    Answer answer;
    if (selector != KERNEL_INDEX_SMC) {
        answer.kernelReturn = KernelCode::unsupported;
        return answer;
    }
    answer.output.key = input.key;
    if (input.data8 == SMC_CMD_READ_INDEX) {
        answer.output.result = keyAtIndex(input.data32, answer.output);
        return answer;
    }
    const KeyFaults* faults = faults_.find(input.key);
    if (faults != nullptr) {
        answer.late = faults->late;
    }
    KeyEntry* entry = keys_.find(input.key);
    if (entry == nullptr) {
        answer.output.result = resultKeyNotFound;
        return answer;
    }
    switch (input.data8) {
    case SMC_CMD_READ_KEYINFO:
        answer.output.result = keyInfo(*entry, faults, answer.output);
        break;
    case SMC_CMD_READ_BYTES:
        publishReadings();
        answer.output.result = read(*entry, faults, answer.output);
        break;
    case SMC_CMD_WRITE_BYTES:
        if (privileged) {
            answer.output.result = write(*entry, faults, input);
        } else {
            answer.kernelReturn = KernelCode::notPrivileged;
        }
        break;
    default:
        answer.output.result = resultBadCommand;
    }
    return answer;
}

std::uint8_t SimulatedSmc::keyInfo(const KeyEntry& entry, const KeyFaults* faults,
                                   SMCKeyData_t& output) const {
    if (faults != nullptr && faults->keyInfoResult) {
        return *faults->keyInfoResult;
    }
    output.keyInfo.dataSize = faults != nullptr ? faults->size.value_or(entry.size) : entry.size;
    output.keyInfo.dataType = faults != nullptr ? faults->type.value_or(entry.type) : entry.type;
    output.keyInfo.dataAttributes = entry.attributes;
    return resultSuccess;
}

std::uint8_t SimulatedSmc::keyAtIndex(std::uint32_t index, SMCKeyData_t& output) const {
    if (index >= keys_.entries().size()) {
        return resultKeyNotFound;
    }
    output.key = keys_.entries()[index].code;
    return resultSuccess;
}

std::uint8_t SimulatedSmc::read(KeyEntry& entry, const KeyFaults* faults, SMCKeyData_t& output) {
    if (faults != nullptr && faults->readResult) {
        return *faults->readResult;
    }
    if (entry.readRefusal != 0) {
        return entry.readRefusal;
    }
    if ((entry.attributes & KeyEntry::readable) == 0) {
        return resultNotReadable;
    }
    const std::vector<std::uint8_t>& bytes =
        faults != nullptr && faults->value ? *faults->value : entry.bytes;
    if (bytes.size() > sizeof output.bytes) {
        return resultTooLong;
    }
    std::copy(bytes.begin(), bytes.end(), output.bytes);
    return resultSuccess;
}

std::uint8_t SimulatedSmc::write(KeyEntry& entry, const KeyFaults* faults,
                                 const SMCKeyData_t& input) {
    if (faults != nullptr && faults->writeResult) {
        return *faults->writeResult;
    }
    if ((entry.attributes & KeyEntry::writable) == 0) {
        return resultNotWritable;
    }
    if (input.keyInfo.dataSize != entry.size || entry.size > sizeof input.bytes) {
        return resultSizeMismatch;
    }
    entry.bytes.assign(input.bytes, input.bytes + entry.size);
    return resultSuccess;
}

} // namespace ventaro
