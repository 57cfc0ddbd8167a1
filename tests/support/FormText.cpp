#include <support/FormText.h>

#include <velmora/tables/LineTableModel.h>
#include <velmora/tables/LineTableView.h>

#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QMetaProperty>
#include <QTextEdit>

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

QString valueOf(const QWidget* editor) {
    if (const auto* text = qobject_cast<const QTextEdit*>(editor))
        return text->toPlainText();
    return editor->metaObject()->userProperty().read(editor).toString();
}

void setValue(QWidget* editor, const QString& text) {
    if (auto* textEdit = qobject_cast<QTextEdit*>(editor))
        textEdit->setPlainText(text);
    else if (!editor->metaObject()->userProperty().write(editor, text))
        qFatal("%s takes no value", qPrintable(editor->objectName()));
}

Values read(const QWidget* form, const QStringList& names) {
    Values values;
    for (const QString& name : names)
        values[name] = valueOf(form->findChild<QWidget*>(name));
    return values;
}

void write(const QWidget* form, const Values& values) {
    for (auto value = values.begin(); value != values.end(); ++value) {
        auto* editor = form->findChild<QWidget*>(value.key().section(' ', 0, 0));
        if (!editor)
            qFatal("there is no %s", qPrintable(value.key()));
        if (const auto* table = qobject_cast<Velmora::LineTableView*>(editor))
            fillColumn(*table, value.key().section(' ', 1).toInt(), value->split(','));
        else
            setValue(editor, *value);
    }
}

QStringList cellsOf(const QWidget* form, const QString& tableName, int rowCount) {
    const Velmora::LineTableModel& model = *form->findChild<Velmora::LineTableView*>(tableName)->getModel();
    QStringList rows;
    for (int row = 0; row < rowCount; ++row)
        rows += (QStringList(model.item(row, 0)->text()) + model.getCells(row)).join('|');
    return rows;
}

QString rangeOf(const QWidget* editor) {
    QStringList choices;
    if (editor->property("maximum").isValid())
        choices += editor->property("minimum").toString() + ".." + editor->property("maximum").toString();
    const auto* combo = qobject_cast<const QComboBox*>(editor);
    for (int index = 0; combo && index < combo->count(); ++index) {
        const QString data = combo->itemData(index).toString();
        choices += combo->itemText(index) + (data.isEmpty() ? QString() : "=" + data);
    }
    return choices.join(',');
}

QStringList rowsOf(const QWidget* widget) {
    QStringList rows;
    const auto* grid = dynamic_cast<QGridLayout*>(widget->layout());
    for (int row = 0; row < grid->rowCount(); ++row) {
        const auto widgetAt = [&](int column) {
            QLayoutItem* item = grid->itemAtPosition(row, column);
            return item ? item->widget() : nullptr;
        };
        const QWidget* editor = widgetAt(1);
        if (!editor)
            continue;
        const auto* label = qobject_cast<QLabel*>(widgetAt(0));
        const auto* help = qobject_cast<QLabel*>(widgetAt(2));
        rows += QStringList{label && label->buddy() == editor ? label->text() : "none", editor->objectName(),
                            help ? help->text() : QString(), rangeOf(editor)}
                    .join('|');
    }
    return rows;
}

} // namespace FormText
