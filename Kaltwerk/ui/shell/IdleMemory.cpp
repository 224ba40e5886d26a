#include "IdleMemory.h"

#include <link.h>
#include <malloc.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>

namespace ventaro {

namespace {

int releaseReadOnlySegments(dl_phdr_info* object, std::size_t /*size*/, void* /*context*/) {
    const auto pageMask = ~(static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE)) - 1);
    for (int index = 0; index < object->dlpi_phnum; ++index) {
        const auto& segment = object->dlpi_phdr[index];
        // A writable one holds addresses that the loader has put in, even where it is read-only by
        // now; the others are exactly what is in the file.
        if (segment.p_type == PT_LOAD && (segment.p_flags & PF_W) == 0) {
            const std::uintptr_t begin = (object->dlpi_addr + segment.p_vaddr) & pageMask;
            const std::uintptr_t end = object->dlpi_addr + segment.p_vaddr + segment.p_memsz;
            ::madvise(reinterpret_cast<void*>(begin), end - begin, // NOLINT: as the loader says it
                      MADV_DONTNEED);
        }
    }
    return 0;
}

} // namespace

void releaseIdleMemory() {
    ::malloc_trim(0);
    ::dl_iterate_phdr(releaseReadOnlySegments, nullptr);
}

} // namespace ventaro
