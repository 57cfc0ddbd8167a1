#include <fuzz/Property.h>

#include <velmora/rules/Configuration.h>
#include <velmora/rules/ConfigurationValue.h>

#include <Brindle/core/Exception.h>

#include <algorithm>
#include <charconv>
#include <cstdint>

namespace {

using Velmora::Configuration;
namespace Value = Velmora::ConfigurationValue;

const std::string filename = "some.velmora";

bool isLine(const std::string& text, std::size_t most) {
    std::size_t line = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), line);
    return error == std::errc() && end == text.data() + text.size() && line >= 1 &&
           line <= std::max<std::size_t>(most, 1);
}

void checkValue(const std::string& value) {
    if (const auto text = Value::toText(value))
        require(Value::toText(Value::fromText(*text)) == text, "a text is written and read back");
    if (const auto list = Value::toList(value)) {
        require(!list->empty(), "a list has an item");
        require(Value::toList(Value::fromList(*list)) == list, "a list is written and read back");
        require(Value::fromList(*list).find('\n') == std::string::npos, "a list takes one line");
    }
}

void checkAccepted(const Configuration& configuration) {
    const Configuration::KeyOrder isBefore;
    const auto& entries = configuration.getEntries();
    for (auto entry = entries.begin(); entry != entries.end(); ++entry) {
        require(configuration.find(entry->key) == &*entry, "an entry is found by its key");
        require(std::next(entry) == entries.end() || isBefore(*entry, *std::next(entry)), "entries are sorted");
        checkValue(entry->value);
    }
    const std::string content = configuration.getContent();
    const Configuration again = Configuration::parse(content, filename);
    require(again.getContent() == content, "what is written is read back");
    require(again.getCompany() == configuration.getCompany() && again.getName() == configuration.getName() &&
                again.getUID() == configuration.getUID(),
            "the IP is kept");
}

} // namespace

/// The input is the content of a configuration file.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const auto lineCount = static_cast<std::size_t>(std::ranges::count(text, '\n')) + 1;
    try {
        checkAccepted(Configuration::parse(text, filename));
    } catch (const Brindle::Critical& exception) {
        require(exception.getField("filename") == filename, "a refusal names the file");
        require(isLine(exception.getField("line"), lineCount), "a refusal names a line of the file");
    }
    return 0;
}
