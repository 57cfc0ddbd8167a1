#pragma once

#include <QMap>
#include <QString>
#include <QStringList>

QT_BEGIN_NAMESPACE
class QWidget;
QT_END_NAMESPACE

/// Forms as texts, for setting and comparing.
namespace FormText {

using Values = QMap<QString, QString>; // texts by the editors' names

/// Values written as "name=text;name=text".
Values parse(const QString& text, Values values = {});

/// What an editor shows.
QString valueOf(const QWidget* editor);
/// Gives an editor that text, where it can take it.
void setValue(QWidget* editor, const QString& text);

/// What the form's editors of these names show.
Values read(const QWidget* form, const QStringList& names);
/// Sets the form's editors. The name of a table with the number of a column, as in "TriggerTableView 1", takes the
/// texts of the column from the first row on, separated by commas; hidden rows are filled in too.
void write(const QWidget* form, const Values& values);
inline void write(const QWidget* form, const QString& values) {
    write(form, parse(values));
}

/// The cells of a table's first rows, those of a row separated by "|".
QStringList cellsOf(const QWidget* form, const QString& tableName, int rowCount);

/// The range of a spin box, or the items of a combo box with their data.
QString rangeOf(const QWidget* editor);
/// The rows of a widget's grid as the user sees them: label, name, help and range.
QStringList rowsOf(const QWidget* widget);

} // namespace FormText
