#pragma once

#include <cstdio>
#include <cstdlib>

/// Ends the process with the text, which makes the input a finding, unless the property holds.
inline void require(bool holds, const char* property) {
    if (holds)
        return;
    std::fprintf(stderr, "violated: %s\n", property);
    std::abort();
}
