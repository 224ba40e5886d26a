#pragma once

#include <QString>

namespace ventaro {

/// Has the desktop show `text` as a notification. Returns at once; a desktop that shows none leaves
/// a line in the log. Main thread only.
void notifyDesktop(const QString& text);

} // namespace ventaro
