#include "ThreadPriority.h"

#include <sys/resource.h>
#include <unistd.h>

namespace ventaro {

void lowerThreadPriority(int niceness) {
    if (niceness > 0) {
        // On Linux niceness belongs to the thread. A refusal only leaves it as urgent as it was.
        ::setpriority(PRIO_PROCESS, static_cast<id_t>(::gettid()), niceness);
    }
}

} // namespace ventaro
