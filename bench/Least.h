#pragma once

#include <algorithm>
#include <chrono>
#include <limits>

/// Milliseconds that the work takes: the least of some rounds, which other processes disturb least.
template <class Work>
double leastOf(int roundCount, Work work) {
    double least = std::numeric_limits<double>::max();
    for (int round = 0; round < roundCount; ++round) {
        const auto start = std::chrono::steady_clock::now();
        work();
        const std::chrono::duration<double, std::milli> elapsed = std::chrono::steady_clock::now() - start;
        least = std::min(least, elapsed.count());
    }
    return least;
}
