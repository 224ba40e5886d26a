#pragma once

namespace ventaro {

/// How warm a temperature is, in the colours in which it is shown.
enum class TemperatureBand { green, yellow, orange, red };

/// Red from 85 °C, orange from 70, yellow from 55, else green, also for a value that is no number.
TemperatureBand temperatureBand(double celsius);

} // namespace ventaro
