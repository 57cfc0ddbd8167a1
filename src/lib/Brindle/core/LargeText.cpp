#include <Brindle/core/LargeText.h>

#include <memory>

#include <sys/mman.h>

namespace Brindle {

namespace {

constexpr std::size_t pageSize = 4096;
constexpr std::size_t smallest = std::size_t{4} << 20U; // Of two large pages at least one is whole.

} // namespace

void reserveMore(std::string& text, std::size_t size) {
    text.reserve(text.size() + size);
    std::size_t space = text.capacity() - text.size();
    void* begin = text.data() + text.size();
    if (space >= smallest && std::align(pageSize, pageSize, begin, space))
        madvise(begin, space, MADV_HUGEPAGE); // A hint, whose failure is no fault.
}

} // namespace Brindle
