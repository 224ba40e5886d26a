#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace ventaro {

/// Starts `program` with `arguments` (the first is its own name) and with these descriptors as its
/// input and output; its errors are thrown away. Returns once the process that was started has
/// ended, which a program that goes on in the background does at once; whether it ended well.
bool startInBackground(const std::filesystem::path& program, std::vector<std::string> arguments,
                       int input, int output);

} // namespace ventaro
