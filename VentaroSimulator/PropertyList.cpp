#include "PropertyList.h"

#include <pugixml.hpp>

#include <cstdint>
#include <stdexcept>
#include <string_view>
#include <system_error>

namespace ventaro {

namespace {

std::string text(const pugi::xml_node& value, const std::string& key) {
    if (std::string_view(value.name()) != "string") {
        throw std::runtime_error("the value of " + key + " is not a string");
    }
    return value.text().get();
}

bool boolean(const pugi::xml_node& value, const std::string& key) {
    const std::string_view name = value.name();
    if (name != "true" && name != "false") {
        throw std::runtime_error("the value of " + key + " is neither true nor false");
    }
    return name == "true";
}

std::vector<std::string> texts(const pugi::xml_node& value, const std::string& key) {
    if (std::string_view(value.name()) != "array") {
        throw std::runtime_error("the value of " + key + " is not an array");
    }
    std::vector<std::string> list;
    for (const pugi::xml_node& item : value.children()) {
        list.push_back(text(item, key));
    }
    return list;
}

} // namespace

LaunchdJobDescription readLaunchdPropertyList(const std::filesystem::path& file) {
    constexpr std::uintmax_t largest = 1 << 20U; // bytes
    std::error_code error;
    if (std::filesystem::file_size(file, error) > largest || error) { // also for a folder
        throw std::runtime_error(file.string() + ": not a file that could be a property list");
    }
    pugi::xml_document document;
    const pugi::xml_parse_result result = document.load_file(file.c_str());
    if (!result) {
        throw std::runtime_error(file.string() + ": " + result.description());
    }
    const pugi::xml_node dictionary = document.child("plist").child("dict");
    LaunchdJobDescription job;
    for (pugi::xml_node node = dictionary.child("key"); node; node = node.next_sibling("key")) {
        const std::string key = node.text().get();
        const pugi::xml_node value = node.next_sibling();
        if (key == "Label") {
            job.label = text(value, key);
        } else if (key == "ProgramArguments") {
            job.programArguments = texts(value, key);
        } else if (key == "RunAtLoad") {
            job.runAtLoad = boolean(value, key);
        } else if (key == "KeepAlive") {
            job.keepAlive = boolean(value, key);
        } else if (key == "StandardOutPath") {
            job.standardOutPath = text(value, key);
        } else if (key == "StandardErrorPath") {
            job.standardErrorPath = text(value, key);
        }
    }
    if (job.label.empty() || job.programArguments.empty()) {
        throw std::runtime_error(file.string() + ": Label or ProgramArguments is missing");
    }
    return job;
}

} // namespace ventaro
