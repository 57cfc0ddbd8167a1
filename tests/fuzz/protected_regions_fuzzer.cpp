#include <fuzz/Property.h>

#include <velmora/rules/ProtectedRegions.h>

#include <Brindle/core/Exception.h>

#include <algorithm>
#include <cstdint>

namespace {

/// What the pass makes of the text, and the regions that it had enciphered, each of which becomes the line "@".
struct Result {
    std::string output;
    std::vector<std::string> regions;
};

Result protect(std::string_view text) {
    Result result;
    const auto encipher = [&result](const std::string& language, const std::string& region) {
        require(language == "vhdl", "the language is passed on");
        result.regions.push_back(region);
        return std::string("@\n");
    };
    result.output = Velmora::protectRegions(text, "vhdl", encipher);
    return result;
}

auto lineCount(std::string_view text) {
    return std::ranges::count(text, '\n');
}

bool hasMarker(std::string_view text) {
    return text.find("`protect begin") != text.npos || text.find("`protect end") != text.npos;
}

void checkProtected(std::string_view text, const Result& result) {
    require(!hasMarker(result.output), "no marker is left");
    auto lines = lineCount(result.output);
    for (const std::string& region : result.regions) {
        require(!hasMarker(region), "no marker is enciphered");
        require(region.empty() || region.ends_with('\n'), "a region is whole lines");
        lines += 1 + lineCount(region); // two markers became one line
    }
    const auto expected = lineCount(text) + 1; // the last line gains a line feed
    require(lines <= expected, "no line is invented");
    const bool isOpen = text.rfind("`protect begin") != text.npos && lines < expected;
    require(lines == expected || isOpen, "lines are lost in a region that stays open only");
    if (!hasMarker(text))
        require(result.output == std::string(text) + '\n', "a text without markers stays as it is");
}

} // namespace

/// The input is a generated HDL text.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    try {
        checkProtected(text, protect(text));
    } catch (const Brindle::Fatal& exception) {
        require(hasMarker(text), "markers alone are refused");
    }
    return 0;
}
