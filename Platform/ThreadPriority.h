#pragma once

namespace ventaro {

/// Makes the calling thread give way to others by `niceness`, 0 to 19. It cannot be taken back.
void lowerThreadPriority(int niceness);

} // namespace ventaro
