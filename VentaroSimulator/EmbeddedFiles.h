#pragma once

namespace ventaro::EmbeddedFiles {

/// data/macbookpro16_1.keys: the keys of the machine that is simulated.
extern const char* const keyTable;
/// data/com.ventaro.helper.plist: the daemon of a machine that comes with the helper installed.
extern const char* const helperPropertyList;
/// data/macbookpro16_1.kernel: the kernel's values.
extern const char* const kernelValues;
/// data/macbookpro16_1.profile.json: what the system profiler knows.
extern const char* const profile;

} // namespace ventaro::EmbeddedFiles
