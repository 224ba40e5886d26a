#pragma once

#include "FileDescriptor.h"

#include <sys/types.h>

#include <filesystem>
#include <optional>
#include <vector>

/// What the systems of this family each spell in their own way. All descriptors are closed on exec
/// from their first moment, so that no program that another thread just starts inherits one. There
/// is one implementation per system, in the folder named for it.
namespace ventaro {

/// Whether reads and writes wait.
enum class Blocking { yes, no };

/// A pipe's two ends; both empty, with errno set, if the process is out of descriptors.
struct Pipe {
    FileDescriptor reading;
    FileDescriptor writing;
};
Pipe makePipe(Blocking blocking);

/// A Unix domain stream socket; empty with errno set on failure.
FileDescriptor makeUnixSocket(Blocking blocking);
/// The next connection to a listening socket, not blocking; empty with errno set if there is none.
FileDescriptor acceptConnection(int listener);
/// The user at the other end of a connected Unix domain socket; no value if the kernel does not
/// say.
std::optional<uid_t> peerUser(int socket);
/// Makes `target` another name of `source`, and closes what it was.
void duplicateOnto(int source, int target);

/// Makes the calling thread give way to others by `niceness`, 0 to 19. It cannot be taken back.
void lowerThreadPriority(int niceness);

/// Gives the heap's free pages back to the system; for when a program has become quiet.
void releaseFreeMemory();

/// The file of the running program; no value if the system does not say.
std::optional<std::filesystem::path> executablePath();

/// Makes the processes that lose their parent below this one its children.
void adoptOrphans();
/// Ends this process when its parent ends. False if `parent` has ended already.
bool endWithParent(pid_t parent);
/// The children of this process that have not ended.
std::vector<pid_t> livingChildren();

} // namespace ventaro
