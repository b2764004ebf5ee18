// Each of these needs those before it.
// clang-format off
#include <windows.h>
#include <malloc.h>
// clang-format on

#include "support/system_limits.h"

namespace corvenna {

std::size_t HeapBytesInUse() {
    const HANDLE heap = reinterpret_cast<HANDLE>(_get_heap_handle());
    std::size_t bytes = 0;
    PROCESS_HEAP_ENTRY entry{};
    HeapLock(heap);
    while (HeapWalk(heap, &entry) != 0) {
        if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0) bytes += entry.cbData;
    }
    HeapUnlock(heap);
    return bytes;
}

/// Windows has no such limit, but Wine needs minutes for more.
bool MayOpen(std::size_t files) { return files <= 4000; }

// The same here.
NothingMoreOpens::NothingMoreOpens() = default;
NothingMoreOpens::~NothingMoreOpens() = default;

}  // namespace corvenna
