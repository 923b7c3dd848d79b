#pragma once
/// Installs the mock of a family for as long as it lives.
///
///     Use<AaSemMock> sem;                                                 // nice: no noise for other calls
///     EXPECT_CALL(sem, AaSemCreateC(_, 1)).WillOnce(Return(EAaSemRetVal_OutOfResources));
///     EXPECT_CALL(sem, AaSemPost(_)).WillOnce([](TAaSem s) { return real::AaSemPost(s); });
///     sut.start();
///
/// `Use<testing::StrictMock<AaSemMock>>` fails calls without expectation, `Use<testing::NaggyMock<AaSemMock>>` prints
/// them. In all three a call without action of its own is carried out by the platform, so that a test replaces one
/// function and keeps the others. `real::name` carries a call out from an action.
///
/// Built and destroyed by the test's thread; one mock a family at a time. The destructor waits until no call is in the
/// mock any more; a call that stays there for 10 s (an execution unit that waits for a message without limit) ends the
/// process with a text that says so: stop such execution units first.
#include "mock/Slot.hpp"

#include <gmock/gmock.h>

namespace mox::mock {

template <typename Mock>
struct Mannered {
    using Type = ::testing::NiceMock<Mock>;
};
template <typename Mock>
struct Mannered<::testing::NiceMock<Mock>> {
    using Type = ::testing::NiceMock<Mock>;
};
template <typename Mock>
struct Mannered<::testing::StrictMock<Mock>> {
    using Type = ::testing::StrictMock<Mock>;
};
template <typename Mock>
struct Mannered<::testing::NaggyMock<Mock>> {
    using Type = ::testing::NaggyMock<Mock>;
};

template <typename Mock>
class Use : public Mannered<Mock>::Type {
public:
    Use() { Slot<typename Mock::Calls>::install(*this); }
    ~Use() override { Slot<typename Mock::Calls>::remove(); }
    Use(const Use&) = delete;
    Use& operator=(const Use&) = delete;
};

} // namespace mox::mock
