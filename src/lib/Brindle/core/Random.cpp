#include <Brindle/core/Random.h>

#include <limits>
#include <random>

namespace Brindle {

unsigned long getRandomValue() {
    thread_local std::mt19937_64 generator{std::random_device{}()};
    thread_local std::uniform_int_distribution<unsigned long> distribution{0,
                                                                           std::numeric_limits<unsigned long>::max()};
    return distribution(generator);
}

} // namespace Brindle
