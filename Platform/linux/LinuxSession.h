#pragma once

#include "UserSession.h"

namespace ventaro {

/// The session of the user of a plain Linux host: settings and the login item in the configuration
/// folder, no helper to be installed.
UserSession makeLinuxSession();

} // namespace ventaro
