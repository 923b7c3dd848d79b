#include "InRun.hpp"

#include <pal/AaConfig.h>
#include <pal/AaCpuBit.h>
#include <pal/AaError.h>
#include <pal/AaFile.h>
#include <pal/AaMem.h>
#include <pal/AaPro.h>
#include <pal/AaSem.h>
#include <pal/AaShell.h>
#include <pal/AaStartup.h>
#include <pal/AaSysCom.h>
#include <pal/AaSysLog.h>
#include <pal/AaSysMb.h>
#include <pal/AaSysTime.h>
#include <pal/AaSysTimer.h>
#include <pal/AaTrbl.h>

#include <families/forEach.hpp>
#include <host/ddal/Ddal.hpp>
#include <host/faults/Functions.hpp>

#include <functional>
#include <set>
#include <type_traits>

#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic ignored "-Wignored-attributes" // a va_list as the argument of a template loses its own
#pragma GCC diagnostic ignored "-Wattributes"
#endif

namespace mox::testing {
namespace {

using host::faults::ResultShape;

/// An argument of any type: a call that is not carried out does not care.
struct Zero {
    template <typename Type>
    operator Type() const { // NOLINT(google-explicit-constructor): stands for every argument
        return Type();
    }
};

#define MOX_ZERO(r, data, i, type) BOOST_PP_COMMA_IF(i) Zero()
#define MOX_ZEROS(types) BOOST_PP_SEQ_FOR_EACH_I(MOX_ZERO, _, types)

template <typename Result>
std::uint64_t bitsOf(Result result) {
    if constexpr (std::is_pointer_v<Result>)
        return reinterpret_cast<std::uintptr_t>(result);
    else
        return static_cast<std::uint64_t>(result);
}

/// One function of the platform.
struct Row {
    const char* name;
    std::function<std::uint64_t()> call; ///< with zeros; answers the result
};

std::vector<Row> allFunctions() {
    std::vector<Row> rows;
#define MOX_FUNCTION(result, name, types) rows.push_back({#name, [] { return bitsOf(::name(MOX_ZEROS(types))); }});
#define MOX_FUNCTION0(result, name) rows.push_back({#name, [] { return bitsOf(::name()); }});
#define MOX_PROCEDURE(name, types)                                                                                     \
    rows.push_back({#name, [] {                                                                                        \
                        ::name(MOX_ZEROS(types));                                                                      \
                        return std::uint64_t{0};                                                                       \
                    }});
#define MOX_PROCEDURE0(name)                                                                                           \
    rows.push_back({#name, [] {                                                                                        \
                        ::name();                                                                                      \
                        return std::uint64_t{0};                                                                       \
                    }});
#include <families/ddal.def>
#include <families/pal.def>
    rows.push_back({"AaSysLogPrint", [] { return bitsOf(AaSysLogPrint(EAaSysLogSeverityLevel_Info, "%s", "")); }});
    rows.push_back({"AaSysLogPrintE", [] { return bitsOf(AaSysLogPrintE(EAaSysLogSeverityLevel_Info, 0, "%s", "")); }});
    return rows;
}

/// A result that no function answers to zeros.
std::int64_t rareResult(const ResultShape& shape) {
    if (shape.kind != ResultShape::Kind::number)
        return 0;
    return shape.isEnum ? 1 : shape.isSigned ? -71 : 71;
}

class EveryFunction : public InRun {};

TEST_F(EveryFunction, AnswersWhatIsPlanned) {
    for (const Row& row : allFunctions()) {
        SCOPED_TRACE(row.name);
        const host::faults::Function* function = host::faults::findFunction(row.name);
        ASSERT_NE(function, nullptr);
        const std::int64_t planned = rareResult(function->result);
        const auto id = plan(answering(row.name, planned));
        EXPECT_EQ(row.call(), static_cast<std::uint64_t>(planned));
        EXPECT_EQ(fault(id).seen, 1U);
        EXPECT_EQ(fault(id).fired, 1U);
        faults->clearAll();
    }
}

TEST_F(EveryFunction, SucceedsWhenItIsStuckFromTheBeginning) {
    for (const Row& row : allFunctions()) {
        SCOPED_TRACE(row.name);
        const auto id = plan(with(host::faults::Action::stuck, row.name));
        EXPECT_EQ(row.call(), 0U);
        EXPECT_EQ(fault(id).fired, 1U);
        faults->clearAll();
    }
}

TEST_F(EveryFunction, StandsInTheTableAndNoOther) {
    std::set<std::string> names;
    for (const Row& row : allFunctions())
        EXPECT_TRUE(names.insert(row.name).second) << row.name;
    std::set<std::string> table;
    for (const auto& [name, function] : host::faults::functions())
        table.emplace(name);
    EXPECT_EQ(names, table);
    EXPECT_GT(names.size(), 190U);
}

} // namespace
} // namespace mox::testing
