#include "Faults.h"

#include "KeyTable.h"
#include "NumberParse.h"
#include "SMCService.h"

#include <sstream>
#include <stdexcept>
#include <string>

namespace ventaro {

namespace {

// Result bytes of the SMC, as real machines answer them.
constexpr std::uint8_t keyNotFound = 0x84;
constexpr std::uint8_t notReadable = 0x85;
constexpr std::uint8_t notWritable = 0x86;

/// Words separated by blanks; double quotes keep blanks inside a word.
std::vector<std::string> splitWords(std::string_view line) {
    std::vector<std::string> words;
    bool quoted = false;
    bool inWord = false;
    for (const char character : line) {
        if (character == '"') {
            quoted = !quoted;
            if (!inWord) {
                words.emplace_back();
            }
            inWord = true;
        } else if (!quoted && (character == ' ' || character == '\t' || character == '\r')) {
            inWord = false;
        } else {
            if (!inWord) {
                words.emplace_back();
            }
            inWord = true;
            words.back() += character;
        }
    }
    if (quoted) {
        throw std::invalid_argument("a quote is not closed");
    }
    return words;
}

std::uint32_t fourCharacters(const std::string& word) {
    if (word.size() != 4) {
        throw std::invalid_argument("\"" + word +
                                    "\" has not four characters (a blank needs quotes)");
    }
    return SMCService::fourCharCode(word);
}

std::uint8_t resultByte(const std::string& word) {
    const auto bytes = parseHexBytes(word);
    if (bytes.size() != 1) {
        throw std::invalid_argument("\"" + word + "\" is not one byte in hex");
    }
    return bytes.front();
}

std::uint32_t wholeNumber(const std::string& word, std::uint32_t largest) {
    const auto number = parseNumber<std::uint32_t>(word, 0, largest);
    if (!number) {
        throw std::invalid_argument("\"" + word + "\" is not a whole number from 0 to " +
                                    std::to_string(largest));
    }
    return *number;
}

} // namespace

const char* const Faults::grammar =
    "  KEY read-fails [RESULT]   reads fail with this SMC result byte (hex, default 85)\n"
    "  KEY info-fails [RESULT]   the key is not known (default 84)\n"
    "  KEY write-fails [RESULT]  writes are refused (default 86)\n"
    "  KEY late MILLISECONDS     answers come late\n"
    "  KEY type TYPE             another type is reported\n"
    "  KEY size BYTES            another size is reported\n"
    "  KEY value nan|HEX         reads return these bytes (nan: a \"flt \" that is no number)\n"
    "  service gone|back         the whole service disappears or returns\n"
    "A key or type with a blank stands in double quotes: \"FS! \" read-fails.\n";

void Faults::add(std::string_view line) {
    const std::vector<std::string> words = splitWords(line);
    if (words.size() < 2 || words.size() > 3) {
        throw std::invalid_argument("\"" + std::string(line) + "\" is no fault");
    }
    const std::string& kind = words[1];
    const std::string argument = words.size() == 3 ? words[2] : std::string();
    const auto result = [&](std::uint8_t fallback) {
        return argument.empty() ? fallback : resultByte(argument);
    };
    if (words[0] == "service" && argument.empty() && (kind == "gone" || kind == "back")) {
        serviceGone_ = kind == "gone";
        return;
    }
    const std::uint32_t key = fourCharacters(words[0]);
    KeyFaults faults = keys_[key];
    if (kind == "read-fails") {
        faults.readResult = result(notReadable);
    } else if (kind == "info-fails") {
        faults.keyInfoResult = result(keyNotFound);
    } else if (kind == "write-fails") {
        faults.writeResult = result(notWritable);
    } else if (kind == "late") {
        constexpr std::uint32_t tenMinutes = 600000;
        faults.late = std::chrono::milliseconds(wholeNumber(argument, tenMinutes));
    } else if (kind == "type") {
        faults.type = fourCharacters(argument);
    } else if (kind == "size") {
        constexpr std::uint32_t largestSize = 255;
        faults.size = wholeNumber(argument, largestSize);
    } else if (kind == "value") {
        // A quiet NaN in single precision, little-endian.
        faults.value = parseHexBytes(argument == "nan" ? "0000C07F" : argument);
    } else {
        throw std::invalid_argument("\"" + kind + "\" is no kind of fault");
    }
    keys_[key] = std::move(faults);
}

void Faults::addAll(std::string_view text) {
    Faults changed = *this;
    std::istringstream lines{std::string(text)};
    std::string line;
    for (int number = 1; std::getline(lines, line); ++number) {
        if (line.find_first_not_of(" \t\r") == std::string::npos || line.starts_with("# ")) {
            continue;
        }
        try {
            changed.add(line);
        } catch (const std::invalid_argument& error) {
            throw std::invalid_argument("line " + std::to_string(number) + ": " + error.what());
        }
    }
    *this = std::move(changed);
}

const KeyFaults* Faults::find(std::uint32_t key) const {
    const auto found = keys_.find(key);
    return found == keys_.end() ? nullptr : &found->second;
}

} // namespace ventaro
