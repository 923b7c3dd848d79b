#pragma once
/// Reference-counted memory blocks. Any thread, at any time; nothing here blocks.
#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Allocates a block with one reference. Its content is indeterminate.
/// @param size  bytes; 0 gives a block without room, to be released like any other
/// @return the block, aligned for every type; null when there is no memory
void* AaMemMalloc(size_t size);

/// Adds a reference; each one is given back with AaMemUnRef.
/// @param block  from AaMemMalloc or from a function that says so; null is ignored
void AaMemRef(void* block);

/// Gives a reference back; the last one releases the block.
/// @param block  from AaMemMalloc or from a function that says so; null is ignored. Nothing else may be passed.
void AaMemUnRef(void* block);

#ifdef __cplusplus
}
#endif
