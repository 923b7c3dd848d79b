// How clang's fuzzer calls a target.
#include "Fuzz.hpp"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz({reinterpret_cast<const char*>(data), size});
    return 0;
}
