#include <velmora-generate/NumberOptions.h>

#include <velmora/signal/NumberText.h>
#include <velmora/signal/Scaling.h>

#include <Brindle/core/Label.h>
#include <Brindle/tool/UsageError.h>

namespace GenerateTool {

namespace {

[[noreturn]] void refuse(std::string_view option, const std::string& expectation) {
    throw Brindle::located(Brindle::UsageError("Option --" + std::string(option) + " should be " + expectation),
                           BRINDLE_HERE);
}

} // namespace

std::optional<double> findReal(const Brindle::CommandLine& commandLine, std::string_view option) {
    const auto text = commandLine.find(option);
    const auto value = text ? Velmora::parseReal(*text) : std::nullopt;
    if (text && !value)
        refuse(option, "a number");
    return value;
}

std::optional<int> findInteger(const Brindle::CommandLine& commandLine, std::string_view option, int smallest,
                               int largest) {
    const auto text = commandLine.find(option);
    const auto value = text ? Velmora::parseInteger(*text) : std::nullopt;
    if (text && (!value || *value < smallest || *value > largest)) {
        refuse(option, "a whole number from " + Brindle::getLabel(smallest) + " to " + Brindle::getLabel(largest));
    }
    return value;
}

std::vector<double> findReals(const Brindle::CommandLine& commandLine, std::string_view option) {
    std::vector<double> values;
    const std::string text = commandLine.find(option).value_or("");
    for (std::size_t begin = 0; begin < text.size();) {
        const auto end = std::min(text.find(',', begin), text.size());
        const auto value = Velmora::parseReal(std::string_view(text).substr(begin, end - begin));
        if (!value || end + 1 == text.size())
            refuse(option, "numbers with a comma between them");
        values.push_back(*value);
        begin = end + 1;
    }
    return values;
}

unsigned getWidth(const Brindle::CommandLine& commandLine) {
    commandLine.get("width");
    return static_cast<unsigned>(*findInteger(commandLine, "width", 1, Velmora::widestCoefficient));
}

} // namespace GenerateTool
