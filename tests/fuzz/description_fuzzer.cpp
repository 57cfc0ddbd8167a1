#include <fuzz/Property.h>

#include <velmora/rules/IPDescription.h>
#include <velmora/rules/WhiteSpace.h>

#include <Brindle/core/Exception.h>

#include <algorithm>
#include <cstdint>

namespace {

const std::string filename = "/prefix/share/velmora/Orvane/one/config";

bool isCollapsed(const std::string& text) {
    return !text.empty() && Velmora::simplified(text) == text;
}

bool isAbsoluteOrNone(const std::string& path) {
    return path.empty() || path.starts_with('/');
}

void checkAccepted(const Velmora::IPDescription& ip) {
    require(isCollapsed(ip.name) && isCollapsed(ip.category), "name and category are there, white space collapsed");
    require(isCollapsed(ip.company) && ip.company.find(' ') == ip.company.npos, "the company is one word");
    require(!ip.variants.empty() && std::ranges::all_of(ip.variants, isCollapsed), "every variant is a word");
    constexpr std::size_t longestUID = 100; // bytes
    require(ip.uid.size() <= longestUID, "25 characters take at most 100 bytes");
    require(ip.scriptFilename.empty() || !ip.uid.empty(), "a script has a uid");
    require(isAbsoluteOrNone(ip.scriptFilename) && isAbsoluteOrNone(ip.htmlFilename), "paths are absolute");
}

} // namespace

/// The input is the content of a description file.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    try {
        checkAccepted(Velmora::parseIPDescription({reinterpret_cast<const char*>(data), size}, filename));
    } catch (const Brindle::Critical& exception) {
        require(exception.getField("filename") == filename, "a refusal names the file");
    }
    return 0;
}
