#include "Board/src/Caches.hpp"
#include "mock/Faults.hpp"
#include "unit/Board/IdentityPlatform.hpp"

#include <mox/Board.h>
#include <pal/AaConfig.h>

#include <gmock/gmock.h>

namespace mox::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr std::uint32_t fdd = 0;
constexpr std::uint32_t tdd = 1;
constexpr std::uint32_t wcdma = 2;
constexpr std::uint32_t notDetermined = 3;

/// On a unit of the Wim line, whose type is known already.
class WimRatType : public Identification {
protected:
    WimRatType() {
        platform.hwSwId = 0x00A03000;
        EXPECT_EQ(ApiGetLocalUnitType(), EUnitType_Wim);
        platform.takeCalls();
        platform.takeLog();
    }

    void insert(std::uint64_t inSlot0, std::uint64_t inSlot1, std::uint64_t inSlot2) {
        platform.cards[0].kind = inSlot0;
        platform.cards[1].kind = inSlot1;
        platform.cards[2].kind = inSlot2;
    }

    static std::string present(int slot, std::uint64_t kind, const std::string& meaning) {
        return "ApiGetLocalWimRatType: ddal_sysinfo_get_uint() returned 0 (success); slot " + std::to_string(slot) +
               ", value " + std::to_string(kind) + " (" + meaning + ")";
    }

    static LogLine absent(int slot) { return infoLine(present(slot, 0, "card not present")); }
};

TEST_F(WimRatType, AsksForTheCardsOfAllSlotsInTheirOrder) {
    EXPECT_EQ(ApiGetLocalWimRatType(), fdd);
    EXPECT_THAT(platform.takeCalls(),
                ElementsAre("AaConfigTagGet(sys.lfs.fpga.technology)", "ddal_sysinfo_get_uint(0, 12, 5, 0)",
                            "ddal_sysinfo_get_uint(0, 12, 5, 1)", "ddal_sysinfo_get_uint(0, 12, 5, 2)"));
    EXPECT_THAT(platform.takeLog(), ElementsAre(absent(0), absent(1), absent(2)));
}

struct CardRow {
    std::uint64_t kind;
    const char* meaning;
    std::uint32_t technology;
};

TEST_F(WimRatType, OfASingleCardIsTheOneThatTheCardTells) {
    const CardRow rows[] = {{1, "TDD", tdd},
                            {2, "FDD", fdd},
                            {3, "mixed/WiFi/MuLTEFire", fdd},
                            {4, "mixed/WiFi/MuLTEFire", fdd},
                            {6, "MBIO2 TDD", tdd},
                            {7, "mixed/WiFi/MuLTEFire", fdd}};
    for (int slot = 0; slot < 3; ++slot) {
        for (const CardRow& row : rows) {
            ps::hwapi::board::caches.wimRatType.forget();
            insert(0, 0, 0);
            platform.cards[slot].kind = row.kind;
            EXPECT_EQ(ApiGetLocalWimRatType(), row.technology) << "for kind " << row.kind;
            std::vector<LogLine> expected{absent(0), absent(1), absent(2)};
            expected[static_cast<std::size_t>(slot)] = infoLine(present(slot, row.kind, row.meaning));
            EXPECT_EQ(platform.takeLog(), expected);
        }
    }
}

TEST_F(WimRatType, OfACardOfAnUnknownKindIsFddWithAWarning) {
    for (const std::uint64_t kind :
         {std::uint64_t{5}, std::uint64_t{8}, std::uint64_t{9}, std::uint64_t{0x100000001}, ~std::uint64_t{0}}) {
        ps::hwapi::board::caches.wimRatType.forget();
        insert(0, kind, 0);
        EXPECT_EQ(ApiGetLocalWimRatType(), fdd);
        EXPECT_THAT(
            platform.takeLog(),
            ElementsAre(absent(0),
                        warningLine("ApiGetLocalWimRatType: ddal_sysinfo_get_uint() returned 0; slot 1, value " +
                                    std::to_string(kind) + " (unknown type!)"),
                        absent(2)));
    }
}

TEST_F(WimRatType, OfCardsOfBothTechnologiesIsFddWithAWarning) {
    const LogLine illegal = warningLine("ApiGetLocalWimRatType: illegal state - both TDD and FDD cards present!");
    insert(1, 0, 2);
    EXPECT_EQ(ApiGetLocalWimRatType(), fdd);
    EXPECT_THAT(platform.takeLog(),
                ElementsAre(infoLine(present(0, 1, "TDD")), absent(1), infoLine(present(2, 2, "FDD")), illegal));
    ps::hwapi::board::caches.wimRatType.forget();
    insert(2, 6, 0);
    EXPECT_EQ(ApiGetLocalWimRatType(), fdd);
    EXPECT_THAT(platform.takeLog(),
                ElementsAre(infoLine(present(0, 2, "FDD")), infoLine(present(1, 6, "MBIO2 TDD")), absent(2), illegal));
}

TEST_F(WimRatType, OfSeveralCardsOfOneTechnologyIsTheirs) {
    insert(1, 6, 3);
    EXPECT_EQ(ApiGetLocalWimRatType(), tdd);
    EXPECT_EQ(platform.takeLog().size(), 3U);
}

TEST_F(WimRatType, CountsACardThatCannotBeReadAsAbsent) {
    insert(2, 1, 1);
    platform.cards[0].result = -5;
    EXPECT_EQ(ApiGetLocalWimRatType(), tdd);
    EXPECT_THAT(
        platform.takeLog(),
        ElementsAre(
            warningLine("ApiGetLocalWimRatType: ddal_sysinfo_get_uint() returned -5 (FAILURE); slot 0, value 0"),
            infoLine("ApiGetLocalWimRatType: ddal_sysinfo_get_uint() returned -5 (success); slot 0, value 0 (card not "
                     "present)"),
            infoLine(present(1, 1, "TDD")), infoLine(present(2, 1, "TDD"))));
}

TEST_F(WimRatType, CountsACardThatCannotBeReadAsAbsentWhateverItLeaves) {
    platform.cards[1] = {-5, 1, true};
    EXPECT_EQ(ApiGetLocalWimRatType(), fdd);
    EXPECT_THAT(
        platform.takeLog(),
        ElementsAre(
            absent(0),
            warningLine("ApiGetLocalWimRatType: ddal_sysinfo_get_uint() returned -5 (FAILURE); slot 1, value 1"),
            infoLine("ApiGetLocalWimRatType: ddal_sysinfo_get_uint() returned -5 (success); slot 1, value 0 (card not "
                     "present)"),
            absent(2)));
}

TEST_F(WimRatType, IsFddWhenNoCardCanBeRead) {
    for (IdentityPlatform::Card& card : platform.cards) {
        card = {1, 1, true};
    }
    EXPECT_EQ(ApiGetLocalWimRatType(), fdd);
    EXPECT_EQ(platform.takeLog().size(), 6U);
}

TEST_F(WimRatType, ThatTheTagTellsNeedsNoCard) {
    insert(1, 1, 1);
    platform.hasTechnologyTag = true;
    for (const char* tag : {"wcdma", "wcdma_lte", "wcdma fdd"}) {
        ps::hwapi::board::caches.wimRatType.forget();
        platform.technologyTag = tag;
        EXPECT_EQ(ApiGetLocalWimRatType(), wcdma);
        EXPECT_THAT(platform.takeCalls(), ElementsAre("AaConfigTagGet(sys.lfs.fpga.technology)", "AaMemUnRef()"));
    }
}

TEST_F(WimRatType, OfAnyOtherTagIsTheCards) {
    insert(0, 1, 0);
    platform.hasTechnologyTag = true;
    for (const char* tag : {"", "wcdm", "WCDMA", "lte", "lte wcdma"}) {
        ps::hwapi::board::caches.wimRatType.forget();
        platform.technologyTag = tag;
        EXPECT_EQ(ApiGetLocalWimRatType(), tdd) << tag;
        EXPECT_THAT(platform.takeCalls(),
                    ElementsAre("AaConfigTagGet(sys.lfs.fpga.technology)", "ddal_sysinfo_get_uint(0, 12, 5, 0)",
                                "ddal_sysinfo_get_uint(0, 12, 5, 1)", "ddal_sysinfo_get_uint(0, 12, 5, 2)",
                                "AaMemUnRef()"));
        EXPECT_EQ(platform.takeLog().size(), 3U);
    }
}

TEST_F(WimRatType, IsDeterminedOnce) {
    insert(0, 1, 0);
    EXPECT_EQ(ApiGetLocalWimRatType(), tdd);
    platform.takeLog();
    platform.takeCalls();
    insert(0, 0, 0);
    EXPECT_EQ(ApiGetLocalWimRatType(), tdd);
    EXPECT_THAT(platform.takeCalls(), IsEmpty());
}

TEST_F(WimRatType, ThatIsFddForWantOfCardsIsDeterminedOnceToo) {
    EXPECT_EQ(ApiGetLocalWimRatType(), fdd);
    platform.takeLog();
    platform.takeCalls();
    insert(1, 1, 1);
    EXPECT_EQ(ApiGetLocalWimRatType(), fdd);
    EXPECT_THAT(platform.takeCalls(), IsEmpty());
}

TEST_F(WimRatType, ReleasesNoTagThatCannotBeRead) {
    for (const int result : {EAaConfigRetVal_NotFound, EAaConfigRetVal_OutOfResources, EAaConfigRetVal_NotStarted}) {
        ps::hwapi::board::caches.wimRatType.forget();
        const mock::Fault unreadable = mock::fail("AaConfigTagGet").with(result);
        EXPECT_EQ(ApiGetLocalWimRatType(), fdd);
        EXPECT_EQ(unreadable.fired(), 1U);
        EXPECT_THAT(platform.takeCalls(),
                    ElementsAre("ddal_sysinfo_get_uint(0, 12, 5, 0)", "ddal_sysinfo_get_uint(0, 12, 5, 1)",
                                "ddal_sysinfo_get_uint(0, 12, 5, 2)"));
        EXPECT_EQ(platform.takeLog().size(), 3U);
    }
}

TEST_F(WimRatType, TakesATagWithoutTextForNone) {
    const mock::Fault emptyHanded = mock::fail("AaConfigTagGet").with(int{EAaConfigRetVal_NoError});
    insert(6, 0, 0);
    EXPECT_EQ(ApiGetLocalWimRatType(), tdd);
    EXPECT_EQ(emptyHanded.fired(), 1U);
    EXPECT_EQ(platform.takeLog().size(), 3U);
}

TEST_F(WimRatType, OfAnyOtherUnitIsNotDetermined) {
    for (const std::uint32_t hwSwId : {0x00500000U, 0x00200000U, 0U}) {
        ps::hwapi::board::caches.forget();
        platform.hwSwId = hwSwId;
        EXPECT_EQ(ApiGetLocalWimRatType(), notDetermined);
        EXPECT_THAT(platform.takeCalls(), ElementsAre("ddal_devicetree_get_hw_sw_id(0)"));
        EXPECT_EQ(platform.takeLog().size(), 1U);
    }
}

TEST_F(WimRatType, IsDeterminedAsSoonAsTheUnitTypeIsKnown) {
    ps::hwapi::board::caches.forget();
    platform.failWith("ddal_devicetree_get_hw_sw_id", -5);
    EXPECT_EQ(ApiGetLocalWimRatType(), notDetermined);
    EXPECT_EQ(platform.takeLog().size(), 2U);
    platform.failWith("ddal_devicetree_get_hw_sw_id", 0);
    insert(1, 0, 0);
    EXPECT_EQ(ApiGetLocalWimRatType(), tdd);
    EXPECT_EQ(platform.takeLog().size(), 4U);
}

} // namespace
} // namespace mox::testing
