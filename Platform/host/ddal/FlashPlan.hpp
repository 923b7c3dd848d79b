#pragma once
/// Flash operations that end badly on purpose. Every erasing or programming of a block, and the putting of a record, is
/// an operation of its process, counted from 1: an image of b blocks takes 2 * b + 1.
///
///     planFlash({FlashPlan::Kind::fail, 3});
///     EXPECT_EQ(ddal_fpga_update_mod(0x10001, 1, path), DDAL_IO_ERROR);
///     EXPECT_EQ(flashOperations(), 3u);
///     planFlash({});
///
/// A process that was started with MOX_FLASH_PLAN ("cut:17", "fail:17") has that plan from its start. A running process
/// gets one through the store (planFlashOf), for the update that it begins next.
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace mox::host {

class Run;

struct FlashPlan {
    enum class Kind {
        none,
        cut, ///< the process is killed in the middle of the operation: half of the block is erased or programmed
        fail ///< the device does as much of the operation and reports an error; the next operation works again
    };
    Kind kind = Kind::none;
    std::uint64_t operation = 0; ///< which one, from 1
};

/// Reads "cut:17", "fail:17" or "none". @return nothing when the text is something else
std::optional<FlashPlan> parseFlashPlan(std::string_view text);

/// Sets the plan of this process, and counts operations anew. Any thread, not during an update.
void planFlash(FlashPlan plan);

/// How many operations this process has begun since its start, or since the last planFlash.
std::uint64_t flashOperations();

/// Leaves a plan for the next update of any device of a node, whichever process begins it; its operations count from
/// that update's first. Replaces one that was left before; Kind::none takes it back.
/// @return whether it is stored, or taken back
bool planFlashOf(const Run& run, std::uint16_t node, FlashPlan plan);

} // namespace mox::host
