#include <velmora/rules/IPDescription.h>

#include <velmora/rules/WhiteSpace.h>

#include <Brindle/core/Exception.h>
#include <Brindle/core/Label.h>
#include <Brindle/core/Text.h>
#include <Brindle/core/TextLines.h>

#include <bit>
#include <cstdint>
#include <filesystem>
#include <vector>

namespace Velmora {

namespace {

constexpr std::size_t longestUID = 25; // characters

/// Number of characters of a UTF-8 text. A byte that continues no character counts as one.
std::size_t characterCount(const std::string& text) {
    constexpr int longestCharacter = 4; // bytes
    std::size_t count = 0;
    int continuationCount = 0; // bytes that still belong to the last character
    for (const char character : text) {
        const auto byte = static_cast<std::uint8_t>(character);
        const int leadingOnes = std::countl_one(byte); // 1 in a continuation, otherwise the character's bytes
        if (leadingOnes == 1 && continuationCount > 0) {
            --continuationCount;
            continue;
        }
        ++count;
        continuationCount = leadingOnes >= 2 && leadingOnes <= longestCharacter ? leadingOnes - 1 : 0;
    }
    return count;
}

std::vector<std::string> wordsOf(std::string_view line) {
    std::vector<std::string> words;
    for (auto blank = line.find(' '); blank != line.npos; blank = line.find(' ')) {
        words.emplace_back(line.substr(0, blank));
        line.remove_prefix(blank + 1);
    }
    words.emplace_back(line);
    return words;
}

/// The line without any occurrence of the keyword, wherever it stands.
std::string valueWithout(const std::string& line, std::string_view keyword) {
    std::string value;
    std::string_view rest = line;
    for (auto place = rest.find(keyword); place != rest.npos; place = rest.find(keyword)) {
        value += rest.substr(0, place);
        rest.remove_prefix(place + keyword.size());
    }
    value += rest;
    return simplified(value);
}

class Parser {
public:
    explicit Parser(const std::string& filename)
        : _filename(filename), _directory(std::filesystem::absolute(filename).parent_path()) {}

    void takeLine(std::string_view rawLine) {
        ++_lineNumber;
        if (_lineNumber == 1 && rawLine.starts_with(Brindle::byteOrderMark))
            fail("Description file begins with a byte order mark, save it without one");
        const std::string line = simplified(rawLine);
        const std::vector<std::string> words = wordsOf(line);
        if (words.size() < 2)
            fail("Invalid line: '" + line + "'");
        const std::string& keyword = words.front();
        if (keyword == "name")
            _description.name = valueWithout(line, keyword);
        else if (keyword == "category")
            _description.category = valueWithout(line, keyword);
        else if (keyword == "uid")
            _description.uid = checkedUID(onlyValue(words, line));
        else if (keyword == "company")
            _description.company = onlyValue(words, line);
        else if (keyword == "variants")
            _description.variants.insert(_description.variants.end(), words.begin() + 1, words.end());
        else if (keyword == "script")
            _description.scriptFilename = absolute(onlyValue(words, line));
        else if (keyword == "html")
            _description.htmlFilename = absolute(onlyValue(words, line));
        else
            fail("Unknow keyword " + keyword);
        if (line.find('\0') != line.npos)
            fail("Line holds a NUL byte");
    }

    IPDescription finish() {
        _lineNumber = 0;
        if (_description.name.empty())
            fail("Name not specified");
        if (_description.company.empty())
            fail("Company not specified");
        if (_description.category.empty())
            fail("Category not specified");
        if (_description.variants.empty())
            fail("No variant specified");
        if (!_description.scriptFilename.empty() && _description.uid.empty())
            fail("UID not specified");
        _description.formFilename = absolute("form.json");
        return std::move(_description);
    }

private:
    [[noreturn]] void fail(std::string message) const {
        auto error = Brindle::withFields(Brindle::Critical(std::move(message)), {{"filename", _filename}});
        if (_lineNumber > 0)
            error.addField("line", Brindle::getLabel(_lineNumber));
        throw Brindle::Critical(error);
    }

    const std::string& onlyValue(const std::vector<std::string>& words, const std::string& line) const {
        if (words.size() != 2)
            fail("Invalid wordCount: '" + line + "'");
        return words.back();
    }

    std::string checkedUID(const std::string& uid) const {
        if (characterCount(uid) > longestUID)
            fail("UID should contains less than 25 characters");
        return uid;
    }

    /// ".." stays as it is: what it leads to through a symbolic link only the file system knows.
    std::string absolute(const std::string& path) const { return (_directory / path).string(); }

    const std::string& _filename;
    const std::filesystem::path _directory;
    unsigned long _lineNumber = 0; ///< Of the line that is read, from 1.
    IPDescription _description;
};

} // namespace

std::string getIPLabel(const std::string& name, const std::string& company) {
    constexpr std::size_t longestCompany = 80; // characters
    return Brindle::inQuotes(name) + " of " + Brindle::shortened(company, longestCompany);
}

IPDescription parseIPDescription(std::string_view content, const std::string& filename) {
    Parser parser(filename);
    Brindle::TextLines lines(content);
    while (const auto line = lines.nextOrLast())
        parser.takeLine(*line);
    return parser.finish();
}

} // namespace Velmora
