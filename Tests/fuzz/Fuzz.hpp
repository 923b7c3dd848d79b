#pragma once
/// A fuzz target is one function over bytes. clang's fuzzer calls it with inputs that it makes up (scripts/fuzz.sh);
/// in every other lane replay.cpp calls it with the seeds and what lies next to them.
#include <cstdlib>
#include <string_view>

/// Ends the process, which is what a fuzzer takes for a finding, unless something holds.
inline void expect(bool holds) {
    if (!holds) {
        std::abort();
    }
}

/// What each target defines.
void fuzz(std::string_view bytes);
