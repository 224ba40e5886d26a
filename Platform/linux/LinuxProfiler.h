#pragma once

#include "HostTree.h"

#include <string>
#include <vector>

namespace ventaro {

/// What a Linux host knows of itself, as macOS's system profiler would print it: a JSON document
/// with those of `dataTypes` that there is something to say about. What only root may read is
/// missing from it.
std::string linuxProfilerDocument(const HostTree& host, const std::vector<std::string>& dataTypes);

} // namespace ventaro
