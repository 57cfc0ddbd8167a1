#include <velmora/ips/described/FormDescriptionText.h>

#include <velmora/ips/described/FormReferences.h>
#include <velmora/ips/described/JsonObject.h>
#include <velmora/ips/described/JsonText.h>

#include <Brindle/core/Label.h>
#include <Brindle/core/Text.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace Velmora {

namespace {

using Brindle::inQuotes;

constexpr std::size_t mostElements = 1000; // of a list
constexpr std::size_t mostColumns = 32;
constexpr std::size_t longestName = 64; // characters, of a key or an argument
constexpr TextRule resetRule{32767, true};
constexpr TextRule helpRule{1000, false, true};
constexpr double largestDecimal = 1e9;
constexpr int mostDecimals = 6;

/// Keys of a configuration, of what is remembered beside the fields, and object names of the form's own.
constexpr std::array<std::string_view, 7> takenKeys{"company", "name", "uid", "Filepath", "Path", "Reset", "Generate"};
constexpr std::array<std::string_view, 2> takenArguments{"%%DATE%%", "%%APPLICATION%%"};

bool isLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool isNameCharacter(char c) {
    return isLetter(c) || (c >= '0' && c <= '9') || c == '_';
}

bool isKey(std::string_view text) {
    return !text.empty() && isLetter(text.front()) && text.size() <= longestName &&
           std::ranges::all_of(text, isNameCharacter);
}

bool isArgument(std::string_view text) {
    constexpr std::string_view mark = "%%";
    if (text.size() <= 2 * mark.size() || !text.starts_with(mark) || !text.ends_with(mark))
        return false;
    const auto name = text.substr(mark.size(), text.size() - 2 * mark.size());
    return name.size() <= longestName &&
           std::ranges::all_of(name, [](char c) { return isNameCharacter(c) || c == '-'; });
}

template <std::size_t count>
bool isOneOf(std::string_view text, const std::array<std::string_view, count>& texts) {
    return std::ranges::find(texts, text) != texts.end();
}

std::string readKey(JsonObject& object) {
    const std::string& key = object.getText("key");
    if (!isKey(key) || isOneOf(key, takenKeys)) {
        object.refuse("key",
                      "a letter, then letters, digits and '_', and not company, name, uid, Filepath, Path, Reset or "
                      "Generate");
    }
    return key;
}

std::string readArgument(JsonObject& object) {
    const std::string& argument = object.getText("argument");
    if (!isArgument(argument) || isOneOf(argument, takenArguments)) {
        object.refuse("argument",
                      "%%NAME%% of letters, digits, '_' and '-', and not %%DATE%% or %%APPLICATION%%, which "
                      "are always there");
    }
    return argument;
}

DescribedText readText(JsonObject& object) {
    return {object.findText("reset", resetRule)};
}

DescribedNumber readNumber(JsonObject& object) {
    using Limits = std::numeric_limits<int>;
    DescribedNumber number;
    number.minimum = object.getInteger("minimum", Limits::min(), Limits::max());
    number.maximum = object.getInteger("maximum", number.minimum, Limits::max());
    number.reset = object.find("reset") ? object.getInteger("reset", number.minimum, number.maximum) : number.minimum;
    return number;
}

DescribedDecimal readDecimal(JsonObject& object) {
    DescribedDecimal decimal;
    decimal.decimals = object.getInteger("decimals", 1, mostDecimals);
    const double finest = std::pow(10, -decimal.decimals);
    const auto get = [&](std::string_view member, double least, double most) {
        const double number = object.getNumber(member, least, most);
        constexpr double tolerance = 1e-6; // of the finest step; doubles of this size are more exact
        if (std::abs(number / finest - std::round(number / finest)) > tolerance)
            object.refuse(member, "a multiple of " + Brindle::getLabel(finest));
        return number;
    };
    decimal.minimum = get("minimum", -largestDecimal, largestDecimal);
    decimal.maximum = get("maximum", decimal.minimum, largestDecimal);
    decimal.step = object.find("step") ? get("step", finest, largestDecimal) : finest;
    decimal.reset = object.find("reset") ? get("reset", decimal.minimum, decimal.maximum) : decimal.minimum;
    return decimal;
}

DescribedChoice readChoice(JsonObject& object) {
    DescribedChoice choice;
    for (const JsonValue& element : object.getList("items", mostElements)) {
        JsonObject item(element, "an item of " + object.getName("items"));
        const std::string& text = item.getText("text");
        if (std::ranges::find(choice.items, text, &DescribedChoice::Item::text) != choice.items.end())
            item.refuse("text", "another one than those before, there is a " + inQuotes(text) + " already");
        choice.items.push_back({text, item.getText("value", {.mayBeEmpty = true})});
        item.finish();
    }
    const int last = static_cast<int>(choice.items.size()) - 1;
    choice.reset = object.find("reset") ? object.getInteger("reset", 0, last) : 0;
    return choice;
}

DescribedTable::Column readColumn(const JsonValue& element, const JsonObject& table,
                                  const std::vector<DescribedTable::Column>& earlier) {
    JsonObject object(element, "a column of " + table.getName("columns"));
    DescribedTable::Column column;
    column.title = object.getText("title");
    object.setName("the column " + inQuotes(column.title));
    if (std::ranges::find(earlier, column.title, &DescribedTable::Column::title) != earlier.end())
        object.refuse("title", "another one than those before");
    const std::string& kind = object.getText("kind");
    column.required = object.findText("required");
    if (kind == "text")
        column.kind = readText(object);
    else if (kind == "number")
        column.kind = readNumber(object);
    else if (kind == "decimal")
        column.kind = readDecimal(object);
    else if (kind == "choice")
        column.kind = readChoice(object);
    else
        object.refuse("kind", "text, number, decimal or choice");
    object.finish();
    return column;
}

DescribedTable readTable(JsonObject& object) {
    DescribedTable table;
    table.count = object.getText("count");
    for (const JsonValue& element : object.getList("columns", mostColumns))
        table.columns.push_back(readColumn(element, object, table.columns));
    return table;
}

DescribedCoefficients readCoefficients(JsonObject& object) {
    return {object.findText("reset", resetRule), object.getText("width")};
}

DescribedRow::Condition readCondition(const JsonValue& value, const JsonObject& row) {
    JsonObject object(value, row.getName("enabled"));
    DescribedRow::Condition condition;
    condition.key = object.getText("key");
    for (const JsonValue& element : object.getList("is", mostElements))
        condition.texts.push_back(requireText(element, "a text of " + object.getName("is")));
    object.finish();
    return condition;
}

DescribedRow::Kind readKind(JsonObject& object) {
    const std::string& kind = object.getText("kind");
    if (kind == "text")
        return readText(object);
    if (kind == "number")
        return readNumber(object);
    if (kind == "decimal")
        return readDecimal(object);
    if (kind == "choice")
        return readChoice(object);
    if (kind == "coefficients")
        return readCoefficients(object);
    if (kind == "table")
        return readTable(object);
    object.refuse("kind", "text, number, decimal, choice, coefficients or table");
}

DescribedRow readRow(const JsonValue& element) {
    JsonObject object(element, "the row");
    DescribedRow row;
    row.line = object.getLine();
    row.key = readKey(object);
    object.setName("the row " + inQuotes(row.key));
    row.argument = readArgument(object);
    row.kind = readKind(object);
    const bool isTable = std::holds_alternative<DescribedTable>(row.kind);
    const bool mayBeRequired =
        std::holds_alternative<DescribedText>(row.kind) || std::holds_alternative<DescribedCoefficients>(row.kind);
    if (row.key == entityKey && !std::holds_alternative<DescribedText>(row.kind))
        object.refuse("kind", "text, it names the output");
    if (!isTable) {
        row.label = object.getText("label");
        row.help = object.find("help") ? object.getText("help", helpRule) : std::string();
    }
    if (mayBeRequired)
        row.required = object.findText("required");
    if (const JsonValue* enabled = object.find("enabled"))
        row.enabled = readCondition(*enabled, object);
    object.finish();
    return row;
}

DescribedSection readSection(JsonObject& object) {
    DescribedSection section;
    section.title = object.getText("section");
    object.setName("the section " + inQuotes(section.title));
    for (const JsonValue& element : object.getList("rows", mostElements))
        section.rows.push_back(readRow(element));
    object.finish();
    return section;
}

/// Rows and sections, in their order; neighbours that stand in no section together.
std::vector<DescribedSection> readSections(JsonObject& form) {
    std::vector<DescribedSection> sections;
    for (const JsonValue& element : form.getList("rows", mostElements)) {
        JsonObject object(element, "the row");
        if (object.find("section")) {
            sections.push_back(readSection(object));
            continue;
        }
        if (sections.empty() || !sections.back().title.empty())
            sections.emplace_back();
        sections.back().rows.push_back(readRow(element));
    }
    return sections;
}

} // namespace

FormDescription parseFormDescription(std::string_view text) {
    const JsonValue value = parseJson(text);
    JsonObject object(value, "the form");
    FormDescription form;
    object.findText("$schema");
    form.title = object.getText("title");
    const std::string& result = object.getText("result");
    if (result != "file" && result != "files")
        object.refuse("result", "file or files");
    form.isDirectory = result == "files";
    form.sections = readSections(object);
    object.finish();
    requireReferences(form);
    return form;
}

} // namespace Velmora
