#include <velmora-seal/Report.h>

#include <Brindle/tool/Tool.h>

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

void showProblem(std::string_view text) {
    Brindle::showProblem("velmora-seal", text);
}

} // namespace SealTool
