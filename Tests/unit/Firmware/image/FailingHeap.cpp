#include "unit/Firmware/image/FailingHeap.hpp"

#include <cstdlib>
#include <new>

namespace mox::images {
namespace {

thread_local unsigned t_left = 0; // until the one that fails; 0: none does
thread_local bool t_failed = false;

void* allocate(std::size_t size) {
    if (t_left > 0 && --t_left == 0) {
        t_failed = true;
        return nullptr;
    }
    return std::malloc(size);
}

} // namespace

FailingHeap::FailingHeap(unsigned allocation) {
    t_failed = false;
    t_left = allocation;
}

FailingHeap::~FailingHeap() {
    t_left = 0;
}

bool FailingHeap::hasFailed() const { // NOLINT(readability-convert-member-functions-to-static): of this one
    return t_failed;
}

} // namespace mox::images

using mox::images::allocate;

void* operator new(std::size_t size) {
    void* const memory = allocate(size);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}
void* operator new[](std::size_t size) {
    return operator new(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return allocate(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return allocate(size);
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
