#include "mock/Faults.hpp"

#include "mock/src/DefaultFailures.hpp"
#include "mock/src/FunctionRecord.hpp"

#include <cstdint>
#include <stdexcept>

namespace mox::mock {
namespace {

const char* text(FaultValue::Kind kind) {
    switch (kind) {
    case FaultValue::Kind::none:
        return "nothing";
    case FaultValue::Kind::number:
        return "a number";
    case FaultValue::Kind::boolean:
        return "a bool";
    case FaultValue::Kind::pointer:
        return "a pointer";
    }
    return "?";
}

[[noreturn]] void refuse(const FunctionRecord& record, const std::string& why) {
    throw std::invalid_argument(std::string("fault of ") + record.name + ": " + why);
}

void check(const FunctionRecord& record, const FaultValue& value) {
    const ResultType& type = record.result;
    if (value.kind != type.kind)
        refuse(record, std::string("it answers ") + text(type.kind) + ", not " + text(value.kind));
    if (value.type != typeid(void) && value.type != type.type &&
        (type.isEnum || value.kind == FaultValue::Kind::pointer))
        refuse(record, "the value is of another type than its result");
    if (value.kind == FaultValue::Kind::number && !host::faults::fits(value.bits, value.negative, shapeOf(type)))
        refuse(record, "the value does not fit its result");
}

} // namespace

std::uint64_t Fault::fired() const {
    const std::lock_guard<std::mutex> guard(bookMutex());
    return m_rule->fired;
}

std::string Fault::lastFailed() const {
    const std::lock_guard<std::mutex> guard(bookMutex());
    return m_rule->lastFailed;
}

void Fault::cancel() {
    const std::lock_guard<std::mutex> guard(bookMutex());
    m_rule->active = false;
}

FaultBuilder::FaultBuilder(const std::string& function) : m_function(function) {
    functionRecord(function);
}

FaultBuilder& FaultBuilder::onCall(std::uint64_t n) {
    if (n == 0)
        throw std::invalid_argument("calls are counted from 1");
    m_first = n;
    return *this;
}

FaultBuilder& FaultBuilder::times(std::uint64_t count) {
    if (count == 0)
        throw std::invalid_argument("a fault that never happens");
    m_count = count;
    return *this;
}

FaultBuilder& FaultBuilder::fromCall(std::uint64_t n) {
    onCall(n);
    m_count = UINT64_MAX;
    return *this;
}

Fault FaultBuilder::doNothing() {
    return plan(FaultValue{});
}

Fault FaultBuilder::plan(const FaultValue& value) {
    FunctionRecord& record = functionRecord(m_function);
    check(record, value);
    auto rule = std::make_shared<FaultRule>();
    rule->first = m_first;
    rule->last = m_count > UINT64_MAX - m_first ? UINT64_MAX : m_first + m_count - 1;
    rule->value = value;
    const std::lock_guard<std::mutex> guard(bookMutex());
    record.faults.push_back(rule);
    return Fault(rule);
}

Fault failAny(std::uint64_t n) {
    if (n == 0)
        throw std::invalid_argument("calls are counted from 1");
    auto rule = std::make_shared<FaultRule>();
    rule->first = rule->last = n;
    const std::lock_guard<std::mutex> guard(bookMutex());
    faultsOfAny().push_back(rule);
    return Fault(rule);
}

void clearFaults() {
    auto& records = functionRecords();
    const std::lock_guard<std::mutex> guard(bookMutex());
    faultsOfAny().clear();
    for (auto& [name, record] : records)
        record.faults.clear();
}

} // namespace mox::mock
