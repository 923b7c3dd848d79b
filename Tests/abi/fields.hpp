#pragma once
/// Reads the fields of an object by their place instead of their name, to pin down the order in which a class declares
/// them: a service that was compiled against an older header finds them by place too.
#include <cstddef>

namespace mox::abi {

/// Walks over the fields of an object, first to last:
///
///     FieldWalk fields(sut, firstFieldAfterTable);
///     EXPECT_EQ(fields.next<std::uint16_t>(), 0x0601);
///
/// The object outlives the walk and what it hands out.
class FieldWalk {
public:
    /// @param offset  place of the first field in bytes
    template <typename Object>
    explicit FieldWalk(const Object& object, std::size_t offset = 0)
        : m_bytes(reinterpret_cast<const unsigned char*>(&object)), m_offset(offset) {}

    /// @return the field of this type that stands next, behind the padding that the type needs
    template <typename Field>
    const Field& next() {
        m_offset = (m_offset + alignof(Field) - 1) / alignof(Field) * alignof(Field);
        const unsigned char* const place = m_bytes + m_offset;
        m_offset += sizeof(Field);
        return *reinterpret_cast<const Field*>(place);
    }

private:
    const unsigned char* m_bytes;
    std::size_t m_offset;
};

/// Place of the first field of a class with virtual operations and without a base that has fields.
constexpr std::size_t firstFieldAfterTable = sizeof(void*);

} // namespace mox::abi
