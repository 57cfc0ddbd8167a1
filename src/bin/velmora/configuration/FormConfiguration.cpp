#include <velmora/configuration/FormConfiguration.h>

#include <velmora/form/Form.h>
#include <velmora/tables/LineTableView.h>

#include <Brindle/core/Text.h>

#include <QObject>

#include <algorithm>
#include <utility>

namespace Velmora {

namespace {

using Brindle::inQuotes;
using Entry = Configuration::Entry;

std::string rowKey(const FormTable& table, int row) {
    return (table.view->objectName() + "/" + QString::number(row)).toStdString();
}

std::vector<std::string> toStrings(const QStringList& texts) {
    std::vector<std::string> strings;
    for (const QString& text : texts)
        strings.push_back(text.toStdString());
    return strings;
}

/// A configuration made ready for a form: making it refuses whatever the form cannot take, applying it throws nothing.
class FormValues {
public:
    FormValues(const Form& form, const Configuration& configuration) : _form(form), _configuration(configuration) {
        for (const Entry& entry : configuration.getEntries())
            readEntry(entry);
        requireEverything();
    }

    void apply() const {
        for (const auto& [field, value] : _values)
            field->setValue(value);
        for (const FormTable& table : _form.getTables())
            table.view->initialize();
        for (const Row& row : _rows)
            row.table->getModel()->setCells(row.number, row.cells);
    }

private:
    struct Row {
        LineTableView* table;
        int number;
        QStringList cells;
    };

    void readEntry(const Entry& entry) {
        const auto& fields = _form.getFields();
        const auto field = std::ranges::find(fields, QString::fromStdString(entry.key), &FormField::key);
        if (field != fields.end()) {
            _values.emplace_back(&*field, readValue(*field, entry));
            return;
        }
        for (const FormTable& table : _form.getTables()) {
            for (int row = 0; row < LineTableModel::lineCount; ++row) {
                if (entry.key == rowKey(table, row)) {
                    requireVisible(table, row, entry);
                    _rows.push_back({table.view, row, readCells(*table.view->getModel(), entry)});
                    return;
                }
            }
        }
        _configuration.refuse("Unknown key " + inQuotes(entry.key) + ", remove its line or correct it", entry);
    }

    QVariant readValue(const FormField& field, const Entry& entry) const {
        const QString text = QString::fromStdString(_configuration.getText(entry));
        if (const auto value = field.editor->toValue(text))
            return *value;
        refuseValue(text, field.editor->getExpectation(), entry);
    }

    QStringList readCells(const LineTableModel& model, const Entry& entry) const {
        QStringList cells;
        for (const std::string& text : _configuration.getList(entry))
            cells += QString::fromStdString(text);
        if (cells.size() != model.columnCount() - 1) {
            _configuration.refuse(inQuotes(entry.key) + " has " + std::to_string(cells.size()) + " values instead of " +
                                      std::to_string(model.columnCount() - 1),
                                  entry);
        }
        for (int column = 1; column < model.columnCount(); ++column) {
            const QString& text = cells.at(column - 1);
            if (!model.canHold(column, text))
                refuseValue(text, model.getEditor(column)->getExpectation(), entry);
        }
        return cells;
    }

    [[noreturn]] void refuseValue(const QString& text, const QString& expectation, const Entry& entry) const {
        _configuration.refuse(inQuotes(text.toStdString()) + " cannot be the value of " + inQuotes(entry.key) +
                                  ", expected " + expectation.toStdString(),
                              entry);
    }

    void requireVisible(const FormTable& table, int row, const Entry& entry) const {
        const auto lineCount = getLineCount(table);
        if (lineCount && row >= *lineCount) {
            _configuration.refuse(inQuotes(entry.key) + " is beyond the " + table.countKey.toStdString() + " of " +
                                      std::to_string(*lineCount) + ", remove its line or count more",
                                  entry);
        }
    }

    /// The number of lines that the configuration counts; nothing when it does not.
    std::optional<int> getLineCount(const FormTable& table) const {
        const auto& fields = _form.getFields();
        const auto field = std::ranges::find(fields, table.countKey, &FormField::key);
        const Entry* entry = _configuration.find(table.countKey.toStdString());
        return entry ? std::optional(readValue(*field, *entry).toInt()) : std::nullopt;
    }

    void requireEverything() const {
        QStringList missing;
        const auto require = [&](const std::string& key) {
            if (!_configuration.find(key))
                missing += QString::fromStdString(key);
        };
        for (const FormField& field : _form.getFields())
            require(field.key.toStdString());
        for (const FormTable& table : _form.getTables()) {
            const int lineCount = getLineCount(table).value_or(0);
            for (int row = 0; row < lineCount; ++row)
                require(rowKey(table, row));
        }
        if (!missing.isEmpty())
            _configuration.refuseEnd("Missing keys, add a line for each: " +
                                     missing.join(QStringLiteral(", ")).toStdString());
    }

    const Form& _form;
    const Configuration& _configuration;
    std::vector<std::pair<const FormField*, QVariant>> _values;
    std::vector<Row> _rows;
};

} // namespace

void addFormValues(Configuration& configuration, const Form& form) {
    for (const FormField& field : form.getFields())
        configuration.addText(field.key.toStdString(), field.editor->toText(field.getValue()).toStdString());
    for (const FormTable& table : form.getTables()) {
        for (int row = 0; row < table.view->getRowCount(); ++row)
            configuration.addList(rowKey(table, row), toStrings(table.view->getModel()->getCells(row)));
    }
}

void setFormValues(Form& form, const Configuration& configuration) {
    const FormValues values(form, configuration);
    form.change(QObject::tr("Load configuration"), [&values] { values.apply(); });
}

} // namespace Velmora
