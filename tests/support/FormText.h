#pragma once

#include <QMap>
#include <QString>
#include <QStringList>

QT_BEGIN_NAMESPACE
class QWidget;
QT_END_NAMESPACE

namespace Velmora {
class Form;
class LineTableView;
} // namespace Velmora

/// Forms as texts, for setting and comparing.
namespace FormText {

using Values = QMap<QString, QString>; // texts by the keys of the fields

/// Values written as "name=text;name=text".
Values parse(const QString& text, Values values = {});

/// What the fields show.
Values read(const Velmora::Form& form);
/// Fills in fields. The name of a table with the number of a column, as in "TriggerTableView 1", takes the texts of the
/// column from the first row on, separated by commas; hidden rows are filled in too.
void write(const Velmora::Form& form, const Values& values);
inline void write(const Velmora::Form& form, const QString& values) {
    write(form, parse(values));
}

/// The cells of a table's first rows, those of a row separated by "|".
QStringList cellsOf(const Velmora::LineTableView& table, int rowCount);

} // namespace FormText
