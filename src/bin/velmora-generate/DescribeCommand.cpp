#include <velmora-generate/Commands.h>

#include <velmora-generate/Catalogue.h>
#include <velmora-generate/ExitCode.h>
#include <velmora-generate/IPJson.h>
#include <velmora-generate/JsonOutput.h>

#include <velmora/form/Form.h>
#include <velmora/tables/LineTableView.h>

#include <Brindle/core/Console.h>

#include <QJsonArray>

namespace GenerateTool {

namespace {

using Brindle::console;
using Velmora::FormField;
using Velmora::FormTable;
using Velmora::LineTableModel;

constexpr std::string_view help = R"(Usage: velmora-generate describe IP [--json]

Shows what the form of an IP, given by its name or uid, asks for: the key of
each field in a configuration, its label, the values that it can hold and its
reset value; the same for the rows of tables.

      --json  Write one JSON text: the IP with the lists "fields" and "tables".

Example: velmora-generate describe "SER/DES"
)";

/// Nothing when a reset leaves the field alone.
std::optional<QString> getResetText(const FormField& field) {
    return field.resetValue ? std::optional(field.editor->toText(*field.resetValue)) : std::nullopt;
}

QString getColumnTitle(const LineTableModel& model, int column) {
    return model.headerData(column, Qt::Horizontal).toString();
}

QJsonObject toJson(const FormField& field) {
    QJsonObject object = field.editor->getDescription();
    const auto reset = getResetText(field);
    object["key"] = field.key;
    object["label"] = field.label;
    object["reset"] = reset ? QJsonValue(*reset) : QJsonValue();
    return object;
}

QJsonObject toJson(const FormTable& table) {
    const LineTableModel& model = *table.view->getModel();
    QJsonArray columns;
    for (int column = 1; column < model.columnCount(); ++column) {
        QJsonObject object = model.getEditor(column)->getDescription();
        object["label"] = getColumnTitle(model, column);
        object["reset"] = model.getCells(0).at(column - 1);
        columns += object;
    }
    return {{"key", table.view->objectName()}, {"count", table.countKey}, {"columns", columns}};
}

/// What a field or column can hold, below its name.
void showKind(const Velmora::FieldEditor& editor, const std::optional<QString>& reset) {
    console.indent();
    console.print(editor.getExpectation().toStdString());
    if (reset)
        console.print("reset value: " + (reset->isEmpty() ? "empty" : reset->toStdString()));
    console.unindent();
}

void show(const FormField& field) {
    console.print(field.key.toStdString() + ": " + field.label.toStdString());
    showKind(*field.editor, getResetText(field));
}

void show(const FormTable& table) {
    const LineTableModel& model = *table.view->getModel();
    const std::string key = table.view->objectName().toStdString();
    console.print(key + "/0, " + key + "/1, ...: as many as " + table.countKey.toStdString() + ", each with");
    console.indent();
    for (int column = 1; column < model.columnCount(); ++column) {
        console.print(getColumnTitle(model, column).toStdString());
        showKind(*model.getEditor(column), model.getCells(0).at(column - 1));
    }
    console.unindent();
}

int run(const Brindle::CommandLine& commandLine) {
    const InstalledIP ip = Catalogue().getNamed(QString::fromStdString(commandLine.getOperand("The name of the IP")));
    const auto leaf = loadForm(ip);
    const Velmora::Form& form = *leaf->getForm();
    if (!commandLine.has("json")) {
        for (const FormField& field : form.getFields())
            show(field);
        for (const FormTable& table : form.getTables())
            show(table);
        return ExitCode::Done;
    }
    QJsonArray fields;
    for (const FormField& field : form.getFields())
        fields += toJson(field);
    QJsonArray tables;
    for (const FormTable& table : form.getTables())
        tables += toJson(table);
    QJsonObject object = GenerateTool::toJson(ip.description);
    object["fields"] = fields;
    object["tables"] = tables;
    JsonOutput().write(QJsonDocument(object));
    return ExitCode::Done;
}

} // namespace

const Brindle::Command describeCommand{
    "describe", "show what the form of an IP asks for", help, {{"json", false}}, run};

} // namespace GenerateTool
