#pragma once

namespace ventaro {

/// Lets screen readers find a `StatusItemWindow`: as a button with its text as the name. To be
/// called before the first one is made; further calls do nothing. Main thread only.
void makeStatusItemsAccessible();

} // namespace ventaro
