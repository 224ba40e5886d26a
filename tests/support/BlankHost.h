#pragma once

#include "KernelValues.h"
#include "SystemHardwareInspector.h"

#include <map>
#include <string>
#include <vector>

namespace ventaro {

/// A host that knows nothing but what it is given, and keeps account of its profiler.
struct BlankHost final : HostInformation {
    std::optional<std::string> runProgram(const std::string& path,
                                          const std::vector<std::string>& arguments) override {
        ++runs;
        command = path;
        for (const std::string& argument : arguments) {
            command += " " + argument;
        }
        return document;
    }
    void endPrograms() override { hasEnded = true; }
    std::optional<std::vector<std::uint8_t>> kernelValue(std::string_view name) override {
        const auto own = bytes.find(name);
        const auto value = own != bytes.end() ? std::optional(own->second)
                           : kernel           ? kernel->find(name)
                                              : std::nullopt;
        return value ? std::optional(std::vector<std::uint8_t>(value->begin(), value->end()))
                     : std::nullopt;
    }
    std::string operatingSystemVersion() override { return version; }

    std::optional<std::string> document;
    std::optional<KernelValues> kernel;
    std::map<std::string, std::string, std::less<>> bytes; ///< values before those of `kernel`
    std::string version = "Version 0";
    std::string command;
    int runs = 0;
    bool hasEnded = false;
};

} // namespace ventaro
