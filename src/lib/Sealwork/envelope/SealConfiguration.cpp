#include <Sealwork/envelope/SealConfiguration.h>

#include <Brindle/core/Exception.h>
#include <Brindle/core/Label.h>
#include <Brindle/core/Text.h>
#include <Brindle/core/TextLines.h>
#include <Sealwork/keys/KeyFile.h>

#include <system_error>

namespace Sealwork {

namespace {

std::string_view trimmed(std::string_view text) {
    return Brindle::trimmed(text, Brindle::asciiSpaces);
}

/// Where a line of the configuration stands, for the refusal of what it says.
struct Place {
    const std::filesystem::path& filename;
    std::size_t line;

    [[noreturn]] void refuse(std::string reason, const Brindle::Location& location) const {
        throw Brindle::located(
            Brindle::Fatal("Bad seal configuration"), location,
            {{"filename", filename.string()}, {"line", Brindle::getLabel(line)}, {"reason", std::move(reason)}});
    }
};

/// The value of a line "data_method = ...".
DataMethod parseDataMethod(std::string_view line, const Place& place) {
    const auto equals = line.find('=');
    if (equals == line.npos)
        place.refuse("not \"key = value\"", BRINDLE_HERE);
    const auto key = trimmed(line.substr(0, equals));
    if (key != "data_method")
        place.refuse("unknown key \"" + std::string(key) + "\"", BRINDLE_HERE);
    const auto method = findDataMethod(trimmed(line.substr(equals + 1)));
    if (!method)
        place.refuse("data_method is neither aes128-cbc nor aes256-cbc", BRINDLE_HERE);
    return *method;
}

} // namespace

SealConfiguration SealConfiguration::load(const std::filesystem::path& filename) {
    std::error_code error;
    if (std::filesystem::status(filename, error).type() == std::filesystem::file_type::not_found)
        return {};
    return parse(readKeyFile(filename).text(), filename);
}

SealConfiguration SealConfiguration::parse(std::string_view text, const std::filesystem::path& filename) {
    Brindle::TextLines lines(text);
    std::optional<DataMethod> method;
    while (const auto line = lines.nextOrLast()) {
        const auto statement = trimmed(*line);
        if (statement.empty() || statement.starts_with('#'))
            continue;
        const Place place{filename, lines.getLineNumber()};
        if (method)
            place.refuse("data_method is given twice", BRINDLE_HERE);
        method = parseDataMethod(statement, place);
    }
    return {method.value_or(DataMethod::Aes256Cbc)};
}

} // namespace Sealwork
