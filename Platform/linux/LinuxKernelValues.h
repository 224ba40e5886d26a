#pragma once

#include "HostTree.h"

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace ventaro {

/// Kernel values by the names that macOS has for them, as the bytes that macOS would give.
using LinuxKernelValues = std::map<std::string, std::vector<std::uint8_t>, std::less<>>;

/// Those that a Linux host has a source for.
LinuxKernelValues readLinuxKernelValues(const HostTree& host);

} // namespace ventaro
