#pragma once

#include "Platform.h"
#include "UserSession.h"

namespace ventaro {

/// The session of the user whom this process works for, on the machine of `platform`.
std::shared_ptr<UserSession> makeHostSession(const Platform& platform);

} // namespace ventaro
