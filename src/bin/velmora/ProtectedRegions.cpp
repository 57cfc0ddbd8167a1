#include <velmora/ProtectedRegions.h>

#include <Brindle/Exception.h>

namespace Velmora {

namespace {

constexpr std::string_view beginMarker = "`protect begin";
constexpr std::string_view endMarker = "`protect end";

} // namespace

std::string getLanguage(std::string_view filename) {
    return filename.ends_with(".v") || filename.ends_with(".vh") ? "vlog" : "vhdl";
}

std::string protectRegions(std::string_view text, const std::string& language, const RegionCipher& encipher,
                           const Brindle::Location& caller) {
    std::string output;
    output.reserve(text.size() + 1);
    std::string region;
    bool encrypting = false;
    for (bool more = true; more;) {
        const auto end = text.find('\n');
        const std::string_view line = text.substr(0, end);
        more = end != text.npos;
        text.remove_prefix(more ? end + 1 : text.size());

        if (line.find(beginMarker) != line.npos) {
            if (encrypting)
                throw Brindle::located(Brindle::Fatal("Already encrypting"), caller);
            encrypting = true;
        } else if (line.find(endMarker) != line.npos) {
            if (!encrypting)
                throw Brindle::located(Brindle::Fatal("No \"`protect begin\" found"), caller);
            output += encipher(language, region);
            region.clear();
            encrypting = false;
        } else {
            (encrypting ? region : output).append(line).append(1, '\n');
        }
    }
    return output;
}

} // namespace Velmora
