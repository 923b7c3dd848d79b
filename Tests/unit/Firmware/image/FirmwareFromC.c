/* The header that callers in C use, compiled as C: every function of this part is called. */
#include "unit/Firmware/image/FirmwareFromC.h"

#include <mox/Firmware.h>

#include <stdlib.h>

int checkFromC(const char* path, uint32_t ownHwSwId, const char* destination) {
    uint32_t offset = 0;
    uint32_t crc = 0;
    uint32_t version = 0;
    char* text = NULL;
    int result = get_trailer(path, &offset, &text);
    free(text);
    if (result == IMAGE_OK) {
        result = calculate_crc(path, offset, &crc);
    }
    if (result == IMAGE_OK) {
        result = binary_validate(path, ownHwSwId);
    }
    if (result == IMAGE_OK) {
        result = binary_crc(path);
    }
    if (result == IMAGE_OK) {
        result = binary_version(path, ownHwSwId, 0, &version);
    }
    if (result == IMAGE_OK) {
        result = binary_copy_without_trailer(path, destination);
    }
    return result;
}
