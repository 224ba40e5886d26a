#pragma once

namespace ventaro {

/// Gives back what a program that has just become quiet no longer needs: free heap, and the pages
/// of program and libraries that were only read once, to load them. What is used again comes back
/// from the page cache by itself. Any thread.
void releaseIdleMemory();

} // namespace ventaro
