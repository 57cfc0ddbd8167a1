#include <velmora/ips/described/FormReferences.h>

#include <velmora/ips/described/JsonObject.h>
#include <velmora/rules/Coefficients.h>

#include <Brindle/core/Text.h>

#include <algorithm>
#include <cstddef>
#include <map>

namespace Velmora {

namespace {

using Brindle::inQuotes;

constexpr std::size_t mostRows = 1000; // more would not open at once
constexpr std::size_t mostTables = 32;
constexpr int mostLines = 32;         // of a table
constexpr int widestCoefficient = 32; // bits

class ReferenceCheck {
public:
    explicit ReferenceCheck(const FormDescription& form) {
        for (const DescribedSection& section : form.sections) {
            for (const DescribedRow& row : section.rows)
                add(row);
        }
        if (!_rows.contains(entityKey))
            refuseLine("No row has the key 'Entity', which names the output", 1);
        for (const DescribedSection& section : form.sections) {
            for (const DescribedRow& row : section.rows)
                requireNamed(row);
        }
    }

private:
    void add(const DescribedRow& row) {
        requireNew(row, _rows.emplace(row.key, &row), "Key " + inQuotes(row.key));
        requireNew(row, _arguments.emplace(row.argument, &row), "Argument " + inQuotes(row.argument));
        _tableCount += std::holds_alternative<DescribedTable>(row.kind);
        if (_rows.size() > mostRows || _tableCount > mostTables) {
            refuseLine("A form has at most " + std::to_string(mostRows) + " rows and " + std::to_string(mostTables) +
                           " tables",
                       row.line);
        }
    }

    template <class Insertion>
    static void requireNew(const DescribedRow& row, const Insertion& insertion, const std::string& what) {
        if (!insertion.second) {
            refuseLine(what + " is given in line " + std::to_string(insertion.first->second->line) +
                           " already, choose another one",
                       row.line);
        }
    }

    void requireNamed(const DescribedRow& row) const {
        if (row.enabled)
            requireChoice(row);
        if (const auto* table = std::get_if<DescribedTable>(&row.kind))
            requireNumber(row, table->count, "count", 0, mostLines);
        if (const auto* coefficients = std::get_if<DescribedCoefficients>(&row.kind))
            requireNumber(row, coefficients->width, "width", 1, widestCoefficient);
    }

    void requireNumber(const DescribedRow& row, const std::string& key, const char* member, int least, int most) const {
        const auto found = _rows.find(key);
        const auto* number = found != _rows.end() ? std::get_if<DescribedNumber>(&found->second->kind) : nullptr;
        if (!number || number->minimum < least || number->maximum > most) {
            refuseLine(inQuotes(member) + " of the row " + inQuotes(row.key) + " should be the key of a number from " +
                           std::to_string(least) + " to " + std::to_string(most) + " at most",
                       row.line);
        }
    }

    void requireChoice(const DescribedRow& row) const {
        const auto found = _rows.find(row.enabled->key);
        const auto* choice = found != _rows.end() ? std::get_if<DescribedChoice>(&found->second->kind) : nullptr;
        if (!choice || found->second == &row)
            refuseLine("'enabled' of the row " + inQuotes(row.key) + " should name the key of another row, a choice",
                       row.line);
        for (const std::string& text : row.enabled->texts) {
            if (std::ranges::find(choice->items, text, &DescribedChoice::Item::text) == choice->items.end()) {
                refuseLine("'enabled' of the row " + inQuotes(row.key) + " names " + inQuotes(text) +
                               ", which is no text of the choice " + inQuotes(row.enabled->key),
                           row.line);
            }
        }
    }

    std::map<std::string, const DescribedRow*> _rows;      // by their keys
    std::map<std::string, const DescribedRow*> _arguments; // rows by their arguments
    std::size_t _tableCount = 0;
};

} // namespace

void requireReferences(const FormDescription& form) {
    const ReferenceCheck check(form);
}

} // namespace Velmora
