// Each allocation fails in turn: no exception reaches a caller, and every result is one that the header names.
#include "support/TemporaryDirectory.hpp"
#include "unit/Firmware/image/FailingHeap.hpp"

#include <mox/Firmware.h>
#include <mox/ImageTrailer.hpp>
#include <mox/XmlValues.hpp>
#include <pal/AaSysLog.h>

#include <gmock/gmock.h>
#include <syslog.h>
#include <zlib.h>

#include <cstdint>
#include <fstream>

// The lines of the platform's log come here by the linker, and are not written.
extern "C" {
// NOLINTBEGIN(bugprone-reserved-identifier,cert-dcl50-cpp): the linker gives this name
int __wrap_AaSysLogPrintE(EAaSysLogSeverityLevel level, unsigned int featureId, const char* format, ...)
    __attribute__((format(printf, 3, 4)));
int __wrap_AaSysLogPrintE(EAaSysLogSeverityLevel /*level*/, unsigned int /*featureId*/, const char* /*format*/, ...) {
    return 0;
}
// NOLINTEND(bugprone-reserved-identifier,cert-dcl50-cpp)
}

namespace mox::images {
namespace {

using ::testing::AnyOf;
using ::testing::Eq;

class WithoutMemory : public ::testing::Test {
protected:
    WithoutMemory() {
        // Only the functions themselves, not the log that they write to.
        setlogmask(LOG_MASK(LOG_EMERG));
        const std::string payload(150000, 'p');
        const auto crc = crc32(0, reinterpret_cast<const Bytef*>(payload.data()), 150000);
        std::ofstream(m_path, std::ios::binary)
            << payload << "<trailer><Crc32>" << crc << "</Crc32><SwVersion>a version that is longer than fifteen"
            << "</SwVersion><HwSwIdList><HwSwId>1</HwSwId><HwSwId>2</HwSwId><HwSwId>3</HwSwId></HwSwIdList></trailer>"
            << std::string("\0\xF0\x49\2\0", 5);
    }
    ~WithoutMemory() override { setlogmask(LOG_UPTO(LOG_DEBUG)); }

    /// Fails one allocation after the other of a call until there are no more.
    /// @param allowed  what may come of it
    template <typename Call, typename Matcher>
    void sweep(const Call& call, const Matcher& allowed, unsigned least) {
        for (unsigned n = 1;; ++n) {
            int result = 0;
            bool failed = false;
            {
                const FailingHeap heap(n);
                result = call();
                failed = heap.hasFailed();
            }
            if (!failed) {
                EXPECT_EQ(result, 0);
                EXPECT_GT(n, least);
                return;
            }
            EXPECT_THAT(result, allowed) << "allocation " << n;
        }
    }

    testing::TemporaryDirectory m_directory;
    const std::string m_path = m_directory / "image.bin";
};

TEST_F(WithoutMemory, BinaryCrcFails) {
    sweep([this] { return binary_crc(m_path.c_str()); }, AnyOf(Eq(0), Eq(70401), Eq(70406), Eq(70413)), 3);
}

TEST_F(WithoutMemory, BinaryValidateFails) {
    sweep([this] { return binary_validate(m_path.c_str(), 3); },
          AnyOf(Eq(0), Eq(70401), Eq(70406), Eq(70411), Eq(70413)), 6);
}

TEST_F(WithoutMemory, BinaryVersionFails) {
    std::uint32_t version = 0;
    sweep([&] { return binary_version(m_path.c_str(), 3, 0, &version); }, AnyOf(Eq(0), Eq(-1), Eq(-2), Eq(1)), 3);
}

TEST_F(WithoutMemory, ScanHwSwIdFindsNothing) {
    bool failed = true;
    for (unsigned n = 1; failed; ++n) {
        const auto parsed = ps::hwapi::common::image::parseTrailer(
            "<trailer><HwSwIdList><HwSwId>1</HwSwId><HwSwId>2</HwSwId></HwSwIdList></trailer>");
        const FailingHeap heap(n);
        const int result = scan_hwswid(parsed.trailer, 2, 0);
        failed = heap.hasFailed();
        EXPECT_EQ(result, failed ? 70411 : 0) << "allocation " << n;
        EXPECT_TRUE(failed || n > 1);
    }
}

TEST_F(WithoutMemory, CalculateCrcTakesSmallBlocks) {
    std::uint32_t crc = 0;
    std::uint32_t expected = 0;
    ASSERT_EQ(calculate_crc(m_path.c_str(), 149999, &expected), 0);
    sweep(
        [&] {
            const int result = calculate_crc(m_path.c_str(), 149999, &crc);
            EXPECT_EQ(crc, expected);
            return result;
        },
        Eq(0), 1);
}

TEST_F(WithoutMemory, CopyTakesSmallBlocks) {
    const std::string destination = m_directory / "payload";
    sweep([&] { return binary_copy_without_trailer(m_path.c_str(), destination.c_str()); }, Eq(0), 1);
    std::ifstream copied(destination, std::ios::binary | std::ios::ate);
    EXPECT_EQ(copied.tellg(), 150000);
}

} // namespace
} // namespace mox::images
