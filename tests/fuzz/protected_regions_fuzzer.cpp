#include <fuzz/Property.h>

#include <velmora/rules/ProtectedRegions.h>

#include <Brindle/core/Exception.h>

#include <algorithm>
#include <cstdint>

namespace {

auto lineCount(std::string_view text) {
    return std::ranges::count(text, '\n');
}

bool hasMarker(std::string_view text) {
    return text.find("`protect begin") != text.npos || text.find("`protect end") != text.npos;
}

/// Each region becomes the line "@".
void checkProtected(std::string_view text) {
    std::ptrdiff_t lines = 0;
    const auto encipher = [&lines](const std::string& language, const std::string& region) {
        require(language == "vhdl", "the language is passed on");
        require(!hasMarker(region), "no marker is enciphered");
        require(region.empty() || region.ends_with('\n'), "a region is whole lines");
        lines += 1 + lineCount(region); // two markers became one line
        return std::string("@\n");
    };
    const std::string output = Velmora::protectRegions(text, "vhdl", encipher);
    require(!hasMarker(output), "no marker is left");
    lines += lineCount(output);
    const auto expected = lineCount(text) + 1; // the last line gains a line feed
    require(lines <= expected, "no line is invented");
    require(lines == expected || text.find("`protect begin") != text.npos, "lines are lost in a region only");
    require(hasMarker(text) || output == std::string(text) + '\n', "a text without markers stays as it is");
}

} // namespace

/// The input is a generated HDL text.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    try {
        checkProtected(text);
    } catch (const Brindle::Fatal&) {
        require(hasMarker(text), "markers alone are refused");
    }
    return 0;
}
