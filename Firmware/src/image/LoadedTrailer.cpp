#include "image/LoadedTrailer.hpp"

#include <mox/Firmware.h>

#include <cstdlib>

namespace ps::hwapi::common::image {

LoadedTrailer loadTrailer(const char* path) {
    LoadedTrailer loaded;
    char* region = nullptr;
    loaded.result = get_trailer(path, &loaded.offset, &region);
    if (loaded.result != IMAGE_OK) {
        return loaded;
    }
    struct Free {
        void operator()(char* text) const { std::free(text); }
    };
    const std::unique_ptr<char, Free> owner(region);
    loaded.parsed = parseTrailer(region);
    return loaded;
}

} // namespace ps::hwapi::common::image
