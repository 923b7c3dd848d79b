#pragma once
/// Calls a virtual operation by its number instead of its name, to pin down the order in which a class declares its
/// virtual operations: a service that was compiled against an older header calls by number too.
///
/// Holds for the Itanium C++ ABI, which the compilers of the workstation and of the board share.
#include <cstddef>
#include <cstring>
#include <utility>

namespace mox::abi {

/// Slots 0 and 1 hold the two destructors of a class that declares its virtual destructor first.
constexpr std::size_t firstSlotAfterDestructors = 2;

/// A member function pointer as the ABI lays it out. On ARM the mark of a virtual function sits in the adjustment, so
/// a plain address is the same on both.
struct MemberFunctionWords {
    const void* function;
    std::ptrdiff_t adjustment;
};

/// @return the function in a slot of the object's virtual table
template <typename Class>
const void* functionInSlot(const Class& object, std::size_t slot) {
    const void* const* table = nullptr;
    std::memcpy(&table, static_cast<const void*>(&object), sizeof table);
    return table[slot];
}

/// Calls the operation in a slot.
/// @param signature  any operation of the class with the slot's signature; only its type counts
template <typename Class, typename Operation, typename... Arguments>
decltype(auto) callSlot(Class& object, std::size_t slot, Operation signature, Arguments&&... arguments) {
    static_assert(sizeof(Operation) == sizeof(MemberFunctionWords));
    const MemberFunctionWords words{functionInSlot(object, slot), 0};
    std::memcpy(&signature, &words, sizeof signature);
    return (object.*signature)(std::forward<Arguments>(arguments)...);
}

} // namespace mox::abi
