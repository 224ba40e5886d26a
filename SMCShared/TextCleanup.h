#pragma once

#include <string>
#include <string_view>

namespace ventaro {

/// UTF-8 `text` without the white space and line breaks at both ends, Unicode's among them.
std::string trimmed(std::string_view text);
/// UTF-8 `text` with the letters of ASCII and Latin-1 in upper case ("ß" becomes "SS").
std::string upperCased(std::string_view text);
/// `text` without any occurrence of `part`.
std::string removingAll(std::string_view text, std::string_view part);

} // namespace ventaro
