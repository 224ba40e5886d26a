#pragma once

#include "Platform.h"

namespace ventaro {

/// The platform of a plain Linux host: no AppleSMC service, no console user known.
Platform makeLinuxPlatform();

} // namespace ventaro
