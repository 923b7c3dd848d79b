#pragma once
/// What a platform function answers: the shape of its result, and which value of it means failure.
#include <cstdint>
#include <optional>
#include <string_view>
#include <type_traits>

namespace mox::host::faults {

/// How a result is held in 64 bits: numbers with their sign extended, pointers and bool as numbers.
struct ResultShape {
    enum class Kind { none, number, boolean, pointer };
    Kind kind = Kind::none;
    bool isEnum = false;
    bool isSigned = false;
    unsigned bytes = 0;
};

template <typename Result>
constexpr ResultShape shapeOf() {
    ResultShape shape;
    if constexpr (!std::is_void_v<Result>) {
        shape.isEnum = std::is_enum_v<Result>;
        shape.isSigned = std::is_signed_v<Result>;
        shape.bytes = sizeof(Result);
        shape.kind = std::is_pointer_v<Result>      ? ResultShape::Kind::pointer
                     : std::is_same_v<Result, bool> ? ResultShape::Kind::boolean
                                                    : ResultShape::Kind::number;
    }
    return shape;
}

/// Whether a number can be the result. @param negative  the bits are those of a number below 0
bool fits(std::uint64_t bits, bool negative, const ResultShape& shape);

/// How a function fails when nobody cares how: null, false, 0 from a registration, its family's "out of resources",
/// DDAL_IO_ERROR.
/// @return nothing for a function that cannot fail
std::optional<std::int64_t> generalFailure(std::string_view function, const ResultShape& shape);

/// The enumeration that holds the results of a function which answers them as int: "EAaFileRetVal"; empty: none.
std::string_view resultEnumeration(std::string_view function);

/// An enumerator of a result: "EAaSemRetVal_OutOfResources", "DDAL_IO_ERROR".
struct ResultName {
    std::string_view name;
    std::int64_t value = 0;
};

/// Its enumerators. @param enumeration  "EAaSemRetVal", or "DDAL" for the device-driver layer's codes
const ResultName* findResultName(std::string_view enumeration, std::string_view name);
/// The same, by value.
const ResultName* findResultName(std::string_view enumeration, std::int64_t value);

} // namespace mox::host::faults
