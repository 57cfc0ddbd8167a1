#include <velmora-seal/Report.h>

#include <algorithm>
#include <iostream>

namespace SealTool {

namespace {

constexpr std::string_view filenameField = "filename";
constexpr std::string_view lineField = "line";

std::string getOtherFields(const Brindle::Exception& exception) {
    std::string text;
    for (const auto& [name, value] : exception.getFields()) {
        if (name == filenameField || name == lineField)
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
    const std::string line = exception.getField(lineField);
    if (!line.empty())
        place += ":" + line;
    if (!place.empty())
        place += ": ";
    return place + exception.getMessage() + getOtherFields(exception);
}

std::string getPrintable(std::string_view text) {
    std::string printable(text);
    std::ranges::replace_if(
        printable, [](char c) { return (c >= '\0' && c < ' ') || c == '\x7f'; }, '?');
    return printable;
}

void showProblem(std::string_view text) {
    std::cerr << "velmora-seal: " << getPrintable(text) << '\n';
}

} // namespace SealTool
