#include "TemperatureBand.h"

namespace ventaro {

TemperatureBand temperatureBand(double celsius) {
    if (celsius >= 85) {
        return TemperatureBand::red;
    }
    if (celsius >= 70) {
        return TemperatureBand::orange;
    }
    if (celsius >= 55) {
        return TemperatureBand::yellow;
    }
    return TemperatureBand::green;
}

} // namespace ventaro
