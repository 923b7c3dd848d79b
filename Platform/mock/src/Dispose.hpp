#pragma once
/// How handles of the platform are given back when nobody else does.
#include "host/pal/AaMem.hpp"
#include "host/pal/AaSysCom.hpp"

#include <cstdint>

namespace mox::mock {

template <typename Pointer>
Pointer pointerOf(std::uint64_t handle) {
    return reinterpret_cast<Pointer>(static_cast<std::uintptr_t>(handle));
}

inline void destroyMessage(std::uint64_t handle) {
    auto* message = pointerOf<void*>(handle);
    host::AaSysComMsgDestroy(&message);
}

inline void releaseMemory(std::uint64_t handle) {
    host::AaMemUnRef(pointerOf<void*>(handle));
}

} // namespace mox::mock
