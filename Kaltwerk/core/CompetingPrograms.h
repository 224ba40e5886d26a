#pragma once

#include "RunningApplications.h"

namespace ventaro {

/// Whether the application is another fan control program, by its name or identifier in any case.
bool isCompetingFanControl(const RunningApplication& application);

} // namespace ventaro
