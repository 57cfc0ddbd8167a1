#include <Brindle/core/Text.h>

namespace Brindle {

namespace {

bool isContinuationByte(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

} // namespace

std::string shortened(std::string_view text, std::size_t longest) {
    constexpr std::string_view ellipsis = "...";
    std::size_t characters = 0;
    std::size_t cut = 0; // where the characters end that fit before the ellipsis
    for (std::size_t position = 0; position < text.size(); ++position) {
        if (isContinuationByte(text[position]))
            continue;
        if (characters == longest)
            return std::string(text.substr(0, cut)).append(ellipsis);
        if (characters == longest - ellipsis.size())
            cut = position;
        ++characters;
    }
    return std::string(text);
}

std::string inQuotes(std::string_view text) {
    constexpr std::size_t longest = 80; // characters
    return "'" + shortened(text, longest) + "'";
}

std::string getPrintable(std::string_view text) {
    std::string printable(text);
    std::ranges::replace_if(printable, isControl, '?');
    // Terminals obey U+0080 to U+009F too, in UTF-8 two bytes.
    for (auto lead = printable.find('\xc2'); lead != printable.npos; lead = printable.find('\xc2', lead + 1)) {
        const int next = lead + 1 < printable.size() ? static_cast<unsigned char>(printable[lead + 1]) : 0;
        if (next >= 0x80 && next < 0xa0)
            printable.replace(lead, 2, "?");
    }
    return printable;
}

} // namespace Brindle
