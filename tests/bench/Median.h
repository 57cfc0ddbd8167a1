#pragma once

#include <algorithm>
#include <chrono>
#include <vector>

/// Milliseconds that the work takes: the median of some rounds after one that warms the caches.
template <class Work>
double medianOf(int roundCount, Work work) {
    std::vector<double> times;
    for (int round = 0; round <= roundCount; ++round) {
        const auto start = std::chrono::steady_clock::now();
        work();
        const std::chrono::duration<double, std::milli> elapsed = std::chrono::steady_clock::now() - start;
        if (round > 0)
            times.push_back(elapsed.count());
    }
    std::ranges::sort(times);
    return times.at(times.size() / 2);
}
