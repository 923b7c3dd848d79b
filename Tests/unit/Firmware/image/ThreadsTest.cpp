#include "unit/Firmware/image/ImageFixture.hpp"

#include <atomic>
#include <thread>

namespace mox::images {
namespace {

class Images : public OnImages {};

TEST_F(Images, AreReadByManyThreadsAtOnce) {
    constexpr unsigned threads = 4;
    constexpr unsigned rounds = 50;
    std::atomic<unsigned> good{0};
    std::vector<std::thread> running;
    for (unsigned i = 0; i < threads; ++i) {
        const std::string payload = someBytes(70000 + i, i);
        const std::string path = write(imageOf(payload, trailerFor(payload)), "image" + std::to_string(i));
        running.emplace_back([this, path, payload, i, &good] {
            const std::string copy = in("copy" + std::to_string(i));
            for (unsigned round = 0; round < rounds; ++round) {
                std::uint32_t version = 0;
                const bool read = binary_crc(path.c_str()) == 0 &&
                                  binary_version(path.c_str(), 0x12345678, 0, &version) == 0 && version == 0x0102 &&
                                  binary_copy_without_trailer(path.c_str(), copy.c_str()) == 0;
                good += read && contentOf(copy) == payload ? 1U : 0U;
            }
        });
    }
    for (std::thread& thread : running) {
        thread.join();
    }
    EXPECT_EQ(good, threads * rounds);
}

} // namespace
} // namespace mox::images
