#include <velmora-seal/Report.h>

#include <Brindle/core/Text.h>

#include <algorithm>
#include <iostream>

namespace SealTool {

namespace {

constexpr std::string_view filenameField = "filename";
constexpr std::string_view directoryField = "directory";
constexpr std::string_view lineField = "line";

std::string getOtherFields(const Brindle::Exception& exception) {
    std::string text;
    for (const auto& [name, value] : exception.getFields()) {
        if (name == filenameField || name == directoryField || name == lineField)
            continue;
        text += text.empty() ? " (" : ", ";
        if (name != "reason")
            text.append(name).append(" ");
        text += value;
    }
    return text.empty() ? text : text + ")";
}

} // namespace

std::string getReport(const Brindle::Exception& exception) {
    std::string place = exception.getField(filenameField);
    if (place.empty())
        place = exception.getField(directoryField);
    const std::string line = exception.getField(lineField);
    if (!line.empty())
        place += ":" + line;
    if (!place.empty())
        place += ": ";
    return place + exception.getMessage() + getOtherFields(exception);
}

std::string getPrintable(std::string_view text) {
    std::string printable(text);
    std::ranges::replace_if(printable, Brindle::isControl, '?');
    // Terminals obey U+0080 to U+009F too, in UTF-8 two bytes.
    for (auto lead = printable.find('\xc2'); lead != printable.npos; lead = printable.find('\xc2', lead + 1)) {
        const int next = lead + 1 < printable.size() ? static_cast<unsigned char>(printable[lead + 1]) : 0;
        if (next >= 0x80 && next < 0xa0)
            printable.replace(lead, 2, "?");
    }
    return printable;
}

void showProblem(std::string_view text) {
    std::cerr << "velmora-seal: " << getPrintable(text) << '\n';
}

} // namespace SealTool
