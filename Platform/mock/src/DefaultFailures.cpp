#include "mock/src/DefaultFailures.hpp"

#include "host/faults/Result.hpp"

namespace mox::mock {

std::optional<FaultValue> defaultFailure(const FunctionRecord& record) {
    const auto failure = host::faults::generalFailure(record.name, shapeOf(record.result));
    if (!failure)
        return std::nullopt;
    FaultValue value;
    value.kind = record.result.kind;
    value.type = record.result.type;
    value.bits = static_cast<std::uint64_t>(*failure);
    value.negative = *failure < 0;
    return value;
}

host::faults::ResultShape shapeOf(const ResultType& type) {
    using Kind = host::faults::ResultShape::Kind;
    host::faults::ResultShape shape;
    switch (type.kind) {
    case FaultValue::Kind::none:
        shape.kind = Kind::none;
        break;
    case FaultValue::Kind::number:
        shape.kind = Kind::number;
        break;
    case FaultValue::Kind::boolean:
        shape.kind = Kind::boolean;
        break;
    case FaultValue::Kind::pointer:
        shape.kind = Kind::pointer;
        break;
    }
    shape.isEnum = type.isEnum;
    shape.isSigned = type.isSigned;
    shape.bytes = type.bytes;
    return shape;
}

} // namespace mox::mock
