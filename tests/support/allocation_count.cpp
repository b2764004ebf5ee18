#include "support/allocation_count.h"

#include <atomic>
#include <cstdlib>
#include <new>

#ifdef _WIN32
#include <malloc.h>
#endif

namespace {

#ifdef _WIN32
void* TakeAligned(std::size_t size, std::size_t alignment) { return _aligned_malloc(size, alignment); }
void GiveBackAligned(void* memory) { _aligned_free(memory); }
#else
void* TakeAligned(std::size_t size, std::size_t alignment) {
    return std::aligned_alloc(alignment, (size + alignment - 1) / alignment * alignment);
}
void GiveBackAligned(void* memory) { std::free(memory); }
#endif

std::atomic<std::size_t> allocations = 0;
std::atomic<std::size_t> limit = corvenna::NoLimit;

void* Allocate(std::size_t size) {
    ++allocations;
    if (size > limit) throw std::bad_alloc();
    if (void* memory = std::malloc(size == 0 ? 1 : size)) return memory;
    throw std::bad_alloc();
}

void* AllocateAligned(std::size_t size, std::size_t alignment) {
    ++allocations;
    if (void* memory = TakeAligned(size, alignment)) return memory;
    throw std::bad_alloc();
}

}  // namespace

void* operator new(std::size_t size) { return Allocate(size); }
void* operator new[](std::size_t size) { return Allocate(size); }
void* operator new(std::size_t size, std::align_val_t alignment) {
    return AllocateAligned(size, static_cast<std::size_t>(alignment));
}
void* operator new[](std::size_t size, std::align_val_t alignment) {
    return AllocateAligned(size, static_cast<std::size_t>(alignment));
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete(void* memory, std::align_val_t) noexcept { GiveBackAligned(memory); }
void operator delete[](void* memory, std::align_val_t) noexcept { GiveBackAligned(memory); }
void operator delete(void* memory, std::size_t, std::align_val_t) noexcept { GiveBackAligned(memory); }
void operator delete[](void* memory, std::size_t, std::align_val_t) noexcept { GiveBackAligned(memory); }

namespace corvenna {

std::size_t AllocationCount() { return allocations; }

void LimitAllocations(std::size_t bytes) { limit = bytes; }

}  // namespace corvenna
