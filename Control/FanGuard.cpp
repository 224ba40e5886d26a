#include "FanGuard.h"

#include "SensorCatalog.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace ventaro {

namespace {

constexpr double hot = 98;      // °C; at 100 the machine slows itself down
constexpr double veryHot = 105; // °C
constexpr double cool = 90;     // °C
constexpr int mostHotLooks = 4;
constexpr int mostVeryHotLooks = 2;
constexpr int mostBlindLooks = 6;
constexpr int enoughCoolLooks = 6; // half a minute

bool isCpuDie(std::string_view key) {
    constexpr std::array<std::string_view, 3> dies{"TCXC", "TC0F", "TC0E"};
    return std::find(dies.begin(), dies.end(), key) != dies.end() ||
           (key.size() == 4 && key.starts_with("TC") && key[2] >= '0' && key[2] <= '9' &&
            key[3] == 'C');
}

/// One more of those in a row, or none any more.
void count(int& looks, bool isOne) { looks = isOne ? looks + 1 : 0; }

} // namespace

void FanGuard::Look::see(std::string_view key, std::optional<double> celsius) {
    if (!celsius || !isPlausibleTemperature(*celsius)) {
        return;
    }
    hottest_ = std::max(hottest_.value_or(*celsius), *celsius);
    veryHotSensors_ += *celsius >= veryHot ? 1 : 0;
    knowsCpuDie_ = knowsCpuDie_ || isCpuDie(key);
}

std::optional<FanGuard::Reason> FanGuard::judge(const Look& look) {
    count(hotLooks_, look.hottest() >= hot);
    count(veryHotLooks_, look.hottest() >= veryHot);
    count(blindLooks_, !look.knowsCpuDie());
    count(coolLooks_, look.knowsCpuDie() && look.hottest() < cool);
    if (coolLooks_ >= enoughCoolLooks) {
        cause_.reset();
    }
    if (hotLooks_ >= mostHotLooks || veryHotLooks_ >= mostVeryHotLooks ||
        look.veryHotSensors() >= 2) {
        return Reason::hot;
    }
    return blindLooks_ >= mostBlindLooks ? std::optional(Reason::blind) : std::nullopt;
}

void FanGuard::nothingIsForced() { hotLooks_ = veryHotLooks_ = blindLooks_ = 0; }

bool FanGuard::isLow(std::optional<double> target, const FanRange& range) {
    return !target || !std::isfinite(*target) ||
           *target < range.minimum + lowShare * (range.maximum - range.minimum);
}

} // namespace ventaro
