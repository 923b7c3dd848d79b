#pragma once
/// The device-driver layer's result codes, common to all of its families.
///
/// Results are 0 for success or the negative number of a reason; callers compare and print these numbers, so they never
/// change. A function whose result is more than that (a count, a descriptor) says so. What holds for every function:
/// a null output pointer gives DDAL_INVALID_PARAMETER, pointers are only used during the call, and nothing that the
/// caller passes is kept. DDAL_NOT_SUPPORTED can come from every function and is not repeated at each of them.
#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

enum {
    DDAL_OK = 0,                  ///< done
    DDAL_NOT_FOUND = -2,          ///< no such unit, port, file, entry or key
    DDAL_IO_ERROR = -5,           ///< the device was reached and reported an error, or did not answer
    DDAL_BAD_HANDLE = -9,         ///< a descriptor or handle that is not open, or belongs to another family
    DDAL_NO_RESOURCE = -12,       ///< no memory, or no free stream, group, container or handle
    DDAL_BUSY = -16,              ///< somebody else uses the device; asking again later can succeed
    DDAL_ALREADY_EXISTS = -17,    ///< the entry is there already and was left as it is
    DDAL_NO_DEVICE = -19,         ///< this unit has no such device
    DDAL_INVALID_PARAMETER = -22, ///< a parameter out of its range, or a null pointer; nothing was done
    DDAL_NO_SPACE = -28,          ///< the device or the caller's buffer is too small
    DDAL_NOT_SUPPORTED = -95,     ///< this platform does not offer the function; asking again will not help
    DDAL_TIMEOUT = -110           ///< the time limit passed first; nothing was consumed
};

/// Writes the text of a result code, for a log line.
/// @param code       a result of any function of this layer; an unknown one gives "unknown error"
/// @param[out] text  the text, cut to the size and always terminated; untouched when the size is 0
/// @param size       room in `text` in bytes, terminator included
/// @return `text`, also when it is null (nothing is written then)
/// Any thread. Does not block.
char* ddal_strerror(int code, char* text, size_t size);

#ifdef __cplusplus
}
#endif
