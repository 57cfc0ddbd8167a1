#include <support/FormText.h>

#include <velmora/form/Form.h>
#include <velmora/tables/LineTableView.h>

#include <algorithm>

namespace FormText {

namespace {

void fillColumn(const Velmora::LineTableView& table, int column, const QStringList& texts) {
    int row = 0;
    for (const QString& text : texts)
        table.getModel()->item(row++, column)->setText(text);
}

} // namespace

Values parse(const QString& text, Values values) {
    for (const QString& pair : text.split(';', Qt::SkipEmptyParts))
        values[pair.section('=', 0, 0)] = pair.section('=', 1);
    return values;
}

Values read(const Velmora::Form& form) {
    Values values;
    for (const Velmora::FormField& field : form.getFields())
        values[field.key] = field.editor->getText(field.widget);
    return values;
}

void write(const Velmora::Form& form, const Values& values) {
    for (auto value = values.begin(); value != values.end(); ++value) {
        const QString name = value.key().section(' ', 0, 0);
        const auto field = std::ranges::find(form.getFields(), name, &Velmora::FormField::key);
        const auto table = std::ranges::find(form.getTables(), name,
                                             [](const Velmora::FormTable& known) { return known.view->objectName(); });
        if (field != form.getFields().end())
            field->editor->setText(field->widget, *value);
        else if (table != form.getTables().end())
            fillColumn(*table->view, value.key().section(' ', 1).toInt(), value->split(','));
        else
            qFatal("there is no %s", qPrintable(value.key()));
    }
}

QStringList cellsOf(const Velmora::LineTableView& table, int rowCount) {
    const Velmora::LineTableModel& model = *table.getModel();
    QStringList rows;
    for (int row = 0; row < rowCount; ++row)
        rows += (QStringList(model.item(row, 0)->text()) + model.getCells(row)).join('|');
    return rows;
}

} // namespace FormText
