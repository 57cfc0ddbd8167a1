#include <velmora/signal/TextNumbers.h>

#include <velmora/signal/NumberText.h>

#include <Brindle/core/Text.h>
#include <Brindle/core/TextLines.h>

#include <algorithm>
#include <utility>

namespace Velmora {

namespace {

using Brindle::asciiSpaces;
using Brindle::trimmed;
using Cells = std::vector<std::string_view>;

Cells split(std::string_view text, std::string_view separators) {
    Cells cells;
    for (;;) {
        const auto end = text.find_first_of(separators);
        cells.push_back(trimmed(text.substr(0, end), asciiSpaces));
        if (end == text.npos)
            return cells;
        text.remove_prefix(end + 1);
    }
}

std::string_view withoutQuotes(std::string_view cell) {
    const bool isQuoted = cell.size() > 1 && cell.starts_with('"') && cell.ends_with('"');
    return isQuoted ? cell.substr(1, cell.size() - 2) : cell;
}

/// Between commas stands one cell, or several with blanks between them. A comma may end the line.
Cells getCells(std::string_view line) {
    Cells cells;
    for (const std::string_view piece : split(line, ",")) {
        if (piece.empty()) {
            cells.push_back(piece);
            continue;
        }
        for (const std::string_view cell : split(piece, asciiSpaces)) {
            if (!cell.empty())
                cells.push_back(withoutQuotes(cell));
        }
    }
    if (cells.size() > 1 && cells.back().empty())
        cells.pop_back();
    return cells;
}

/// No cell of a header begins with what is meant for a number, and it assigns nothing.
bool isHeader(std::string_view line) {
    const auto beginsWithNumber = [](std::string_view cell) { return looksLikeNumber(getCells(cell).front()); };
    return line.find('=') == line.npos && std::ranges::none_of(split(line, ",\t"), beginsWithNumber);
}

/// Programs that separate numbers by semicolons would lose all but the first of a line.
void refuseSemicolons(const NumberSource& source, std::string_view line, std::string_view taken, std::size_t number) {
    const std::string_view rest = line.substr(taken.size());
    if (trimmed(taken, asciiSpaces).empty() || !rest.starts_with(';'))
        return;
    const Cells cells = getCells(withoutComment(rest.substr(1)));
    if (std::ranges::all_of(cells, [](std::string_view cell) { return parseReal(cell).has_value(); }))
        source.refuseLine("Numbers stand behind ';', which begins a comment: separate them by commas or blanks",
                          number);
}

} // namespace

std::string_view withoutComment(std::string_view line) {
    return line.substr(0, std::min(line.find_first_of("#%;"), line.find("//")));
}

std::vector<double> readTextNumbers(const NumberSource& source) {
    std::vector<double> numbers;
    bool isFirst = true;
    Brindle::TextLines lines(source.content);
    while (const auto line = lines.nextOrLast()) {
        const std::string_view uncommented = withoutComment(*line);
        const std::string_view text = trimmed(uncommented, asciiSpaces);
        if (text.empty())
            continue;
        refuseSemicolons(source, *line, uncommented, lines.getLineNumber());
        if (std::exchange(isFirst, false) && isHeader(text))
            continue;
        for (const std::string_view cell : getCells(text)) {
            const auto number = parseReal(cell);
            if (!number)
                source.refuseNumber(cell, lines.getLineNumber());
            numbers.push_back(*number);
        }
    }
    return numbers;
}

} // namespace Velmora
