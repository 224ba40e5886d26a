#include "TextCleanup.h"

#include <algorithm>
#include <array>

namespace ventaro {

namespace {

// Unicode's white space in UTF-8.
constexpr std::array<std::string_view, 25> whiteSpace{
    " ",      "\t",     "\n",     "\v",     "\f",     "\r",     "\u0085", "\u00a0", "\u1680",
    "\u2000", "\u2001", "\u2002", "\u2003", "\u2004", "\u2005", "\u2006", "\u2007", "\u2008",
    "\u2009", "\u200a", "\u2028", "\u2029", "\u202f", "\u205f", "\u3000"};

} // namespace

std::string trimmed(std::string_view text) {
    const auto shorten = [](auto matches, auto cut) {
        for (;;) {
            const auto found = std::find_if(whiteSpace.begin(), whiteSpace.end(), matches);
            if (found == whiteSpace.end()) {
                return;
            }
            cut(found->size());
        }
    };
    shorten([&](std::string_view space) { return text.starts_with(space); },
            [&](std::size_t size) { text.remove_prefix(size); });
    shorten([&](std::string_view space) { return text.ends_with(space); },
            [&](std::size_t size) { text.remove_suffix(size); });
    return std::string(text);
}

std::string upperCased(std::string_view text) {
    // U+00E0 to U+00FE are "\xC3\xA0" to "\xC3\xBE"; their capitals stand 0x20 before them.
    constexpr char latinLead = '\xC3';
    constexpr std::string_view sharpS = "ß";
    constexpr std::string_view divisionSign = "÷";
    std::string upper;
    for (std::size_t index = 0; index < text.size(); ++index) {
        const std::string_view pair = text.substr(index, 2);
        if (text[index] >= 'a' && text[index] <= 'z') {
            upper += static_cast<char>(text[index] - 'a' + 'A');
        } else if (pair == sharpS) {
            upper += "SS";
            ++index;
        } else if (pair.size() == 2 && pair[0] == latinLead && pair[1] >= '\xA0' &&
                   pair[1] <= '\xBE' && pair != divisionSign) {
            upper += {latinLead, static_cast<char>(pair[1] - 0x20)};
            ++index;
        } else {
            upper += text[index];
        }
    }
    return upper;
}

std::string removingAll(std::string_view text, std::string_view part) {
    std::string kept;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t found = std::min(text.find(part, begin), text.size());
        kept += text.substr(begin, found - begin);
        begin = found + part.size();
    }
    return kept;
}

} // namespace ventaro
