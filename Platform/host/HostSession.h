#pragma once

#include "Platform.h"

namespace ventaro {

/// The session of the user whom this process works for, on the machine of `platform`.
std::unique_ptr<UserSession> makeHostSession(const Platform& platform);

} // namespace ventaro
