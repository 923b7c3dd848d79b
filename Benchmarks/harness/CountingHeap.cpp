#include "CountingHeap.hpp"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<long> g_allocations{0};

void* counted(void* memory) {
    ++g_allocations;
    return memory;
}

void* aligned(std::size_t size, std::align_val_t alignment) {
    const auto unit = static_cast<std::size_t>(alignment);
    return counted(std::aligned_alloc(unit, (size + unit - 1) / unit * unit));
}

void* orThrow(void* memory) {
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

} // namespace

long mox::bench::heapAllocations() {
    return g_allocations;
}

void* operator new(std::size_t size) {
    return orThrow(counted(std::malloc(size)));
}
void* operator new[](std::size_t size) {
    return orThrow(counted(std::malloc(size)));
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return counted(std::malloc(size));
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return counted(std::malloc(size));
}
void* operator new(std::size_t size, std::align_val_t alignment) {
    return orThrow(aligned(size, alignment));
}
void* operator new(std::size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept {
    return aligned(size, alignment);
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete[](void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::align_val_t) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t, std::align_val_t) noexcept {
    std::free(memory);
}
