#include <Brindle/core/Text.h>

namespace Brindle {

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
