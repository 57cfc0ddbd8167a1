#pragma once

#include <QObject>
#include <QStandardItem>
#include <QString>
#include <QStringList>
#include <QWidget>

#include <functional>
#include <variant>
#include <vector>

namespace Velmora {

class LineTableView;

/// A cell of a table.
struct CheckedCell {
    LineTableView* table;
    QStandardItem* item;
};

/// What a check of a form looks at: an editor, a table as a whole, or a cell.
using CheckedPart = std::variant<QWidget*, CheckedCell>;
using CheckedParts = std::vector<CheckedPart>;

/// Marks what the last check of a form refused, until the user edits it. A marked widget has the dynamic property
/// "refused" and a marked cell LineTableModel::ProblemRole; both tell assistive programs what is wrong. The section
/// that a mark lies in is opened, and the form scrolls to the first mark.
class CheckMark : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    /// Marks the parts, which are kept, not owned, and nothing else. Editing one of them takes the mark off all.
    void set(const CheckedParts& parts, const QString& problem);

    /// Why parts are marked; empty when none is.
    const QString& getProblem() const { return _problem; }
    /// The marked parts as a configuration names them: keys of fields and tables, with "/" and the row for a cell.
    QStringList getKeys() const;

public Q_SLOTS:
    void clear();

private:
    void openSections(const QWidget* widget);
    void scrollToFirst();
    void watch(QWidget* editor);
    void watch(const CheckedCell& cell);
    void watchCells(const QAbstractItemModel* model, const std::function<bool(const QModelIndex&)>& isWatched);

    CheckedParts _parts; // that are marked
    QString _problem;
    std::vector<QMetaObject::Connection> _watches;
};

} // namespace Velmora
