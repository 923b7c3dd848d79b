#pragma once
/// System information: values that the unit publishes under a category, a key and, for what exists more than once, an
/// index. Numbers and texts survive a software reset; every process of the unit sees the same ones.
#include <ddal/ddal.h>

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Categories. A key means something only together with its category.
enum {
    DDAL_SYSINFO_CATEGORY_UNIT = 0,   ///< the local unit
    DDAL_SYSINFO_CATEGORY_NETWORK = 3 ///< the unit's connections
};

/// Keys of DDAL_SYSINFO_CATEGORY_UNIT.
enum {
    /// Kind of a radio card: 0 not present, 1 TDD, 2 FDD, 3, 4 and 7 mixed, WiFi or MuLTEFire, 6 TDD (MBIO2).
    /// Index: the slot of the card.
    DDAL_SYSINFO_KEY_RADIO_CARD = 12,
    DDAL_SYSINFO_KEY_ISTI = 14,         ///< ISTI value, 32 bits used; no index
    DDAL_SYSINFO_KEY_RESET_COUNTER = 15 ///< resets in the unit's lifetime; no index
};

/// Keys of DDAL_SYSINFO_CATEGORY_NETWORK.
enum {
    /// What carries the unit's primary connection: 1 Ethernet, other values something else; no index.
    DDAL_SYSINFO_KEY_L1_NETWORK_PRIMARY_CONNECTIVITY = 6
};

/// What an index counts.
enum {
    DDAL_SYSINFO_INDEX_NONE = 0,           ///< the key has one value; the index pointer is null
    DDAL_SYSINFO_INDEX_RADIO_CARD_SLOT = 5 ///< slots of radio cards, from 0
};

/// Reads a number.
/// @param category    one of the categories
/// @param key         a key of that category
/// @param indexKind   what the index counts; DDAL_SYSINFO_INDEX_NONE for a key without index
/// @param index       the index; null for a key without index
/// @param[out] value  the number in the key's unit; unchanged unless the result is DDAL_OK
/// @return DDAL_OK, DDAL_NOT_FOUND (no such category, key or index), DDAL_INVALID_PARAMETER (an index is missing,
///         or one is given for a key without),
///         DDAL_IO_ERROR
/// Any thread. Blocks up to 50 ms.
int ddal_sysinfo_get_uint(uint32_t category, uint32_t key, uint32_t indexKind, const uint32_t* index, uint64_t* value);

/// Sets a number.
/// @param category   one of the categories
/// @param key        a key of that category
/// @param indexKind  what the index counts; DDAL_SYSINFO_INDEX_NONE for a key without index
/// @param index      the index; null for a key without index
/// @param value      the number in the key's unit
/// @return DDAL_OK, DDAL_NOT_FOUND, DDAL_INVALID_PARAMETER (also for a value that can only be read), DDAL_IO_ERROR
/// Any thread. Blocks up to 50 ms.
int ddal_sysinfo_set_uint(uint32_t category, uint32_t key, uint32_t indexKind, const uint32_t* index, uint64_t value);

/// Reads a text.
/// @param category   one of the categories
/// @param key        a key of that category
/// @param indexKind  what the index counts; DDAL_SYSINFO_INDEX_NONE for a key without index
/// @param index      the index; null for a key without index
/// @param[out] text  the text, always terminated; unchanged unless the result is DDAL_OK
/// @param size       room in `text` in bytes, terminator included
/// @return DDAL_OK, DDAL_NOT_FOUND, DDAL_INVALID_PARAMETER, DDAL_NO_SPACE (`size` is too small), DDAL_IO_ERROR
/// Any thread. Blocks up to 50 ms.
int ddal_sysinfo_get_string(uint32_t category, uint32_t key, uint32_t indexKind, const uint32_t* index, char* text,
                            size_t size);

/// Sets a block of bytes.
/// @param category   one of the categories
/// @param key        a key of that category
/// @param indexKind  what the index counts; DDAL_SYSINFO_INDEX_NONE for a key without index
/// @param index      the index; null for a key without index
/// @param data       the bytes, copied
/// @param size       number of bytes, 1 or more
/// @return DDAL_OK, DDAL_NOT_FOUND, DDAL_INVALID_PARAMETER, DDAL_NO_SPACE (more than the key can hold), DDAL_IO_ERROR
/// Any thread. Blocks up to 50 ms.
int ddal_sysinfo_set_data(uint32_t category, uint32_t key, uint32_t indexKind, const uint32_t* index, const void* data,
                          size_t size);

/// Reads a block of bytes.
/// @param category      one of the categories
/// @param key           a key of that category
/// @param indexKind     what the index counts; DDAL_SYSINFO_INDEX_NONE for a key without index
/// @param index         the index; null for a key without index
/// @param[out] data     the bytes; unchanged unless the result is DDAL_OK
/// @param[in,out] size  in: room in `data` in bytes; out: bytes written, or on DDAL_NO_SPACE the bytes needed; else
///                      unchanged
/// @return DDAL_OK, DDAL_NOT_FOUND, DDAL_INVALID_PARAMETER, DDAL_NO_SPACE (`*size` is too small), DDAL_IO_ERROR
/// Any thread. Blocks up to 50 ms.
int ddal_sysinfo_get_data(uint32_t category, uint32_t key, uint32_t indexKind, const uint32_t* index, void* data,
                          size_t* size);

#ifdef __cplusplus
}
#endif
