#include <mox/Board.h>

namespace {
namespace constant {
constexpr uint32_t korSlot = 0;
constexpr uint32_t zup1Slot = 2;
constexpr uint32_t zup2Slot = 3;
constexpr uint32_t zup3Slot = 4;
constexpr uint32_t highestPosition = 14;
/// Stands for a Kor too, unlike every other id of position 15.
constexpr uint32_t anyKor = 0xFF;
constexpr uint32_t noSlotId = 255;
} // namespace constant

uint32_t isInSlot(uint32_t boardId, uint32_t slot) {
    const uint32_t position = boardId >> 4;
    return (boardId & 0xF) == slot && position >= 1 && position <= constant::highestPosition ? 1 : 0;
}

} // namespace

uint32_t IsKor(uint32_t boardId) {
    return boardId == constant::anyKor ? 1 : isInSlot(boardId, constant::korSlot);
}

uint32_t IsZup1(uint32_t boardId) {
    return isInSlot(boardId, constant::zup1Slot);
}

uint32_t IsZup2(uint32_t boardId) {
    return isInSlot(boardId, constant::zup2Slot);
}

uint32_t IsZup3(uint32_t boardId) {
    return isInSlot(boardId, constant::zup3Slot);
}

uint32_t ApiGetSlotIdFromBoardId(uint32_t boardId) {
    if (IsKor(boardId) != 0) {
        return 0;
    }
    if (IsZup1(boardId) != 0) {
        return 1;
    }
    if (IsZup2(boardId) != 0) {
        return 2;
    }
    return IsZup3(boardId) != 0 ? 3 : constant::noSlotId;
}
