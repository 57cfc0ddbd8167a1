#include <velmora/signal/NumberSource.h>

#include <Brindle/core/Exception.h>
#include <Brindle/core/Label.h>
#include <Brindle/core/TextLines.h>

namespace Velmora {

void NumberSource::refuseLine(const std::string& message, std::size_t line) const {
    throw Brindle::located(Brindle::Critical(message), BRINDLE_HERE,
                           {{"filename", filename}, {"line", Brindle::getLabel(line)}});
}

void NumberSource::refuseAt(const std::string& message, std::size_t offset) const {
    refuseLine(message, Brindle::getLineNumber(content, offset));
}

void NumberSource::refuseNumber(std::string_view text, std::size_t line) const {
    constexpr std::size_t longestExcerpt = 40; // characters
    std::string excerpt(text.substr(0, longestExcerpt));
    if (text.size() > longestExcerpt)
        excerpt += "...";
    refuseLine(text.empty() ? "A number is missing" : "'" + excerpt + "' is no number", line);
}

void NumberSource::refuseElement(const std::string& message, std::size_t element) const {
    throw Brindle::located(Brindle::Critical(message), BRINDLE_HERE,
                           {{"filename", filename}, {"element", Brindle::getLabel(element)}});
}

} // namespace Velmora
