#pragma once
/// Byte order of stored words.
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Converts a 32-bit word between its stored form, which is little-endian, and the processor's byte order, in place:
/// nothing changes on a little-endian processor, on a big-endian one the four bytes are reversed.
/// @param[in,out] word  not null
/// Any thread, at any time. Does not block.
void AaCpuBitSwapByteOrder32(uint32_t* word);

#ifdef __cplusplus
}
#endif
