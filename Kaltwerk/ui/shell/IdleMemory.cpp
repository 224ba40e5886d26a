#include "IdleMemory.h"

#include <link.h>
#include <malloc.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>

namespace ventaro {

namespace {

/// Whether the loader has put addresses into segments that are not writable.
bool hasTextRelocations(const dl_phdr_info& object) {
    for (int index = 0; index < object.dlpi_phnum; ++index) {
        const auto& segment = object.dlpi_phdr[index];
        if (segment.p_type != PT_DYNAMIC) {
            continue;
        }
        const auto* entry = reinterpret_cast<const ElfW(Dyn)*>( // NOLINT: as the loader says it
            object.dlpi_addr + segment.p_vaddr);
        for (; entry->d_tag != DT_NULL; ++entry) {
            if (entry->d_tag == DT_TEXTREL ||
                (entry->d_tag == DT_FLAGS && (entry->d_un.d_val & DF_TEXTREL) != 0)) {
                return true;
            }
        }
    }
    return false;
}

int releaseReadOnlySegments(dl_phdr_info* object, std::size_t /*size*/, void* /*context*/) {
    if (hasTextRelocations(*object)) {
        return 0;
    }
    const auto pageMask = ~(static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE)) - 1);
    for (int index = 0; index < object->dlpi_phnum; ++index) {
        const auto& segment = object->dlpi_phdr[index];
        // A page that is given up comes back as it is in the file. A writable segment differs from
        // that, also where the loader has made it read-only since; without text relocations
        // nobody has written to the others.
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
