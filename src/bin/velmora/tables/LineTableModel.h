#pragma once

#include <velmora/fields/FieldEditor.h>

#include <QStandardItemModel>
#include <QStringList>

#include <memory>
#include <vector>

namespace Velmora {

/// A column of a table of lines that the user fills in.
struct LineColumn {
    QString header;
    QString initialText;
    std::shared_ptr<const FieldEditor> editor; ///< Gives every other value that the column can hold.
};

/// The fixed rows of a table of lines: a line's name and number ("SER0", "SER1", ...), then what the user fills in.
class LineTableModel : public QStandardItemModel {
public:
    static constexpr int lineCount = 32;
    /// What the last check of the form found wrong with a cell; no data for the others.
    static constexpr int ProblemRole = Qt::AccessibleDescriptionRole;

    LineTableModel(const QString& nameHeader, const QString& lineName, std::vector<LineColumn> columns);

    /// How the cells of a column are filled in; null for the column of names.
    const FieldEditor* getEditor(int column) const;
    /// True for a text that a cell of the column can hold.
    bool canHold(int column, const QString& text) const;
    /// Gives every cell that can be filled in its initial text.
    void initialize();
    /// Gives a cell that can be filled in its initial text.
    void clearCell(int row, int column);
    /// The texts of a column in the first rows.
    QStringList getTexts(int column, int rowCount) const;
    /// The texts of a row that can be filled in, from its second column on.
    QStringList getCells(int row) const;
    /// Each text must be one that its column can hold.
    void setCells(int row, const QStringList& texts);

    /// Takes the rows stored in the settings group. A name, and a text that could not have been filled in, is passed
    /// over.
    void load(const QString& group);
    /// Stores every row in the settings group, its texts below its number. Never throws.
    void save(const QString& group) const noexcept;

private:
    const std::vector<LineColumn> _columns; // without the column of names
};

} // namespace Velmora
