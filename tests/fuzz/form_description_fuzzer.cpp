#include <fuzz/Property.h>

#include <velmora/ips/described/FormDescriptionText.h>
#include <velmora/rules/ArgumentDictionary.h>

#include <Brindle/core/Exception.h>
#include <Brindle/core/Text.h>

#include <algorithm>
#include <cstdint>

namespace {

bool isPlain(const std::string& text) {
    return std::ranges::none_of(text, Brindle::isControl);
}

void checkAccepted(const Velmora::FormDescription& form) {
    Velmora::ArgumentDictionary arguments;
    bool hasEntity = false;
    for (const Velmora::DescribedSection& section : form.sections) {
        require(!section.rows.empty() && isPlain(section.title), "a section has rows");
        for (const Velmora::DescribedRow& row : section.rows) {
            hasEntity = hasEntity || row.key == Velmora::entityKey;
            require(!row.key.empty() && isPlain(row.key) && isPlain(row.label), "a row has a key");
            require(row.argument.find_first_of("'\\\"") == row.argument.npos, "no argument ends its string");
            if (const auto* choice = std::get_if<Velmora::DescribedChoice>(&row.kind)) {
                arguments.addLiteral(row.argument, choice->items.at(static_cast<std::size_t>(choice->reset)).value);
            } else if (const auto* number = std::get_if<Velmora::DescribedNumber>(&row.kind)) {
                require(number->minimum <= number->reset && number->reset <= number->maximum, "a reset is in range");
            }
        }
    }
    require(hasEntity && !form.title.empty(), "a form has a title and an entity");
    require(isPlain(arguments.getStatement()), "the statement of the arguments is one line");
}

} // namespace

/// The input is the text of a form.json.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    try {
        checkAccepted(Velmora::parseFormDescription(text));
    } catch (const Brindle::Critical& exception) {
        const std::string line = exception.getField("line");
        const auto lineCount = 1 + std::ranges::count(text, '\n');
        require(!line.empty() && std::stol(line) >= 1 && std::stol(line) <= lineCount, "a refusal names a line");
    }
    return 0;
}
