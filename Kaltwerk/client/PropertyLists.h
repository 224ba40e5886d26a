#pragma once

#include <string>
#include <string_view>

namespace ventaro {

/// The label of the application's login item.
constexpr const char* loginItemLabel = "com.ventaro.app";

/// launchd's property list of the helper.
std::string launchDaemonPropertyList();

/// launchd's property list that starts `program` at the user's login.
std::string launchAgentPropertyList(std::string_view program, bool minimized);

/// The desktop entry that does the same on a Linux desktop.
std::string autostartDesktopEntry(std::string_view program, bool minimized);

} // namespace ventaro
