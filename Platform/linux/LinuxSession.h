#pragma once

#include "UserSession.h"

#include <string>

namespace ventaro {

/// The session of the user of a plain Linux host: settings and the login item in the configuration
/// folder, no helper to be installed.
UserSession makeLinuxSession();

/// The running program's own place.
Bundle currentBundle();
/// Writes an English line to standard error.
void logToStandardError(const std::string& line);

} // namespace ventaro
