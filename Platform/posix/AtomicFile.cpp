#include "AtomicFile.h"

#include "FileDescriptor.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <system_error>

namespace ventaro {

namespace {

std::string reason(int errorNumber) {
    switch (errorNumber) {
    case EACCES:
    case EPERM:
        return "keine Berechtigung";
    case ENOSPC:
    case EDQUOT:
        return "kein Speicherplatz mehr frei";
    case EROFS:
        return "das Dateisystem ist schreibgeschützt";
    case ENOENT:
        return "der Ordner fehlt";
    case ENOTDIR:
    case EEXIST:
        return "im Pfad steht eine Datei an der Stelle eines Ordners";
    case EISDIR:
        return "dort liegt ein Ordner";
    case ENAMETOOLONG:
        return "der Pfad ist zu lang";
    default:
        return "Fehler " + std::to_string(errorNumber);
    }
}

bool writeAll(int descriptor, std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = ::write(descriptor, text.data(), text.size());
        if (written < 0 && errno != EINTR) {
            return false;
        }
        text.remove_prefix(written > 0 ? static_cast<std::size_t>(written) : 0);
    }
    return true;
}

} // namespace

FileError::FileError(const std::filesystem::path& path, int errorNumber)
    : std::runtime_error("„" + path.string() +
                         "“ kann nicht geschrieben werden: " + reason(errorNumber) + "."),
      errorNumber_(errorNumber) {}

void writeFileAtomically(const std::filesystem::path& path, std::string_view text, mode_t mode) {
    std::string temporary = path.string() + ".XXXXXX";
    FileDescriptor file(::mkostemp(temporary.data(), O_CLOEXEC));
    if (!file) {
        throw FileError(path, errno);
    }
    // Some file systems tell only at the end that there is no room.
    if (!writeAll(file.get(), text) || ::fchmod(file.get(), mode) != 0 ||
        ::close(file.release()) != 0 || ::rename(temporary.c_str(), path.c_str()) != 0) {
        const int error = errno;
        ::unlink(temporary.c_str());
        throw FileError(path, error);
    }
}

void createFolders(const std::filesystem::path& folder) {
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error) {
        throw FileError(folder, error.value());
    }
}

} // namespace ventaro
