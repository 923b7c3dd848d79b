#pragma once
/// What the doubles know of each function of the platform: how often it was called, and with what.
///
///     const auto before = mox::mock::callCount("AaSemPost");
///     sut.release();
///     EXPECT_EQ(mox::mock::callCount("AaSemPost"), before + 1);
///     EXPECT_EQ(mox::mock::lastCall("AaConfigRadSetValue").at(1), 7u);
///
/// A name that the platform does not have is refused with std::invalid_argument, whose text tells the nearest one.
/// Any thread. Nothing blocks.
#include <cstdint>
#include <string>
#include <vector>

namespace mox::mock {

/// @return calls of a function since the process began, whoever answered them
std::uint64_t callCount(const std::string& function);

/// @return calls of all functions since the process began
std::uint64_t callCount();

/// The arguments of a function's newest call as words: numbers, enumerations and pointers by value, anything else 0.
/// Pointers tell identity only: what they pointed to may be gone.
/// @return empty when the function was never called
std::vector<std::uint64_t> lastCall(const std::string& function);

/// @return names of all functions, sorted
std::vector<std::string> functionNames();

} // namespace mox::mock
