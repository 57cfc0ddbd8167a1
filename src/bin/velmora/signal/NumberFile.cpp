#include <velmora/signal/NumberFile.h>

#include <velmora/signal/ArrayNumbers.h>
#include <velmora/signal/CoeNumbers.h>
#include <velmora/signal/NpyNumbers.h>
#include <velmora/signal/NumberSource.h>
#include <velmora/signal/TextNumbers.h>

#include <Brindle/core/Text.h>

namespace Velmora {

namespace {

std::vector<double> readText(const NumberSource& source, unsigned width) {
    if (isCoe(source.content))
        return readCoeNumbers(source, width);
    if (Brindle::trimmed(source.content, Brindle::asciiSpaces).starts_with('['))
        return readJsonNumbers(source);
    return isCArray(source.content) ? readCNumbers(source) : readTextNumbers(source);
}

} // namespace

std::vector<double> readNumbers(std::string_view content, const std::string& filename, unsigned width) {
    if (isNpy(content))
        return readNpyNumbers({content, filename});
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (content.starts_with(byteOrderMark))
        content.remove_prefix(byteOrderMark.size());
    const NumberSource source{content, filename};
    std::vector<double> numbers = readText(source, width);
    if (numbers.empty())
        source.refuseAt("The file holds no number", content.size());
    return numbers;
}

} // namespace Velmora
