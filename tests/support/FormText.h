#pragma once

#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QMap>
#include <QMetaProperty>
#include <QString>
#include <QStringList>
#include <QWidget>

/// Forms as texts, for comparing.
namespace FormText {

using Values = QMap<QString, QString>; // texts by the editors' names

/// Values written as "name=text;name=text".
inline Values parse(const QString& text, Values values = {}) {
    for (const QString& pair : text.split(';', Qt::SkipEmptyParts))
        values[pair.section('=', 0, 0)] = pair.section('=', 1);
    return values;
}

/// What the form's editors of these names show.
inline Values read(const QWidget* form, const QStringList& names) {
    Values values;
    for (const QString& name : names) {
        const auto* editor = form->findChild<QWidget*>(name);
        values[name] = editor->metaObject()->userProperty().read(editor).toString();
    }
    return values;
}

inline QString rangeOf(const QWidget* editor) {
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

/// The rows of a widget's grid as the user sees them: label, name, help, and the range of a spin box or the items of a
/// combo box with their data.
inline QStringList rowsOf(const QWidget* widget) {
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
