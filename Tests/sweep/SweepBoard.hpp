#pragma once
#include "support/FirmwareImage.hpp"
#include "sweep/Components.hpp"

#include <testkit/Board.hpp>

#include <cstdint>
#include <string>

namespace mox::sweep {

constexpr std::uint32_t hwSwId = 0x00500000;
constexpr std::uint32_t fpgaId = 0x10001;
/// Versions of what the board holds when it is new.
constexpr std::uint32_t factoryVersion = 5;

/// Flash blocks are small, so that an image of few bytes has many.
constexpr std::size_t blockSize = 64;
constexpr std::size_t blocksOfAnImage = 9;

/// Operations that writing one area takes: each block erased, each programmed, and the record.
constexpr std::uint64_t operationsOfAnArea = 2 * blocksOfAnImage + 1;

/// A Kor whose devices all hold factoryVersion.
testkit::Board sweepBoard();

/// What is flashed of a version: the last block is not full.
std::string payloadOf(std::uint32_t version);

/// Puts the image of a component in its place, instead of an earlier one.
void placeImage(const Component& component, std::uint32_t version);

} // namespace mox::sweep
