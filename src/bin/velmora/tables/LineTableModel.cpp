#include <velmora/tables/LineTableModel.h>

#include <QSettings>

#include <algorithm>

namespace Velmora {

LineTableModel::LineTableModel(const QString& nameHeader, const QString& lineName, std::vector<LineColumn> columns)
    : _columns(std::move(columns)) {
    QStringList headers{nameHeader};
    for (const LineColumn& column : _columns)
        headers += column.header;
    setHorizontalHeaderLabels(headers);
    for (int row = 0; row < lineCount; ++row) {
        auto* name = new QStandardItem(lineName + QString::number(row));
        name->setEditable(false);
        setItem(row, 0, name);
        for (int column = 1; column < columnCount(); ++column)
            setItem(row, column, new QStandardItem);
    }
    initialize();
}

const FieldEditor* LineTableModel::getEditor(int column) const {
    return column > 0 ? _columns.at(static_cast<std::size_t>(column - 1)).editor.get() : nullptr;
}

bool LineTableModel::canHold(int column, const QString& text) const {
    return text == _columns.at(static_cast<std::size_t>(column - 1)).initialText || getEditor(column)->canHold(text);
}

void LineTableModel::initialize() {
    for (int row = 0; row < lineCount; ++row) {
        for (int column = 1; column < columnCount(); ++column)
            clearCell(row, column);
    }
}

void LineTableModel::clearCell(int row, int column) {
    item(row, column)->setText(_columns.at(static_cast<std::size_t>(column - 1)).initialText);
}

QStringList LineTableModel::getTexts(int column, int rowCount) const {
    QStringList texts;
    for (int row = 0; row < rowCount; ++row)
        texts += item(row, column)->text();
    return texts;
}

QStringList LineTableModel::getCells(int row) const {
    QStringList texts;
    for (int column = 1; column < columnCount(); ++column)
        texts += item(row, column)->text();
    return texts;
}

void LineTableModel::setCells(int row, const QStringList& texts) {
    for (int column = 1; column < columnCount(); ++column)
        item(row, column)->setText(texts.at(column - 1));
}

void LineTableModel::load(const QString& group) {
    QSettings settings;
    settings.beginGroup(group);
    for (int row = 0; row < lineCount; ++row) {
        const QStringList texts = settings.value(QString::number(row)).toStringList();
        const int storedCount = std::min(columnCount(), texts.size());
        for (int column = 1; column < storedCount; ++column) {
            if (canHold(column, texts.at(column)))
                item(row, column)->setText(texts.at(column));
        }
    }
}

void LineTableModel::save(const QString& group) const noexcept {
    QSettings settings;
    settings.beginGroup(group);
    for (int row = 0; row < lineCount; ++row) {
        QStringList texts;
        for (int column = 0; column < columnCount(); ++column)
            texts += item(row, column)->text();
        settings.setValue(QString::number(row), texts);
    }
    settings.sync();
}

} // namespace Velmora
