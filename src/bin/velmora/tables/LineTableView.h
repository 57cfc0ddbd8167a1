#pragma once

#include <velmora/tables/LineTableModel.h>

#include <QStringList>
#include <QTableView>

#include <functional>
#include <utility>

namespace Velmora {

class LineCountProxyModel;
class LineTableDelegate;

/// A table in which the lines of a form are filled in. A row stays filled in while the form counts too few lines to
/// show it, and is kept in the settings with the others.
class LineTableView : public QTableView {
    Q_OBJECT

public:
    using QTableView::edit;
    /// All rows, the hidden ones too.
    LineTableModel* getModel() const { return _model; }
    /// Number of visible rows.
    int getRowCount() const;
    /// The view's index of a cell of `getModel`; invalid while its row is not shown.
    QModelIndex toShown(const QModelIndex& index) const;

    using Change = std::function<void(const QString& name, const std::function<void()>& work)>;
    /// How work that fills in many cells is run, so that it can be taken back; at first it just runs.
    void setChange(Change change) { _change = std::move(change); }
    /// Gives every cell that can be filled in its initial text.
    void initialize();
    void load();
    void save() const;

public Q_SLOTS:
    /// Shows as many rows as the form now counts lines. A cell that is being edited keeps what was typed.
    void invalidateFilter();

protected:
    /// The name is the view's object name and its subgroup in the form's settings group. The view takes the model.
    LineTableView(const QString& name, const QString& formGroup, LineTableModel* model);

    /// Completes the table with a proxy and a delegate that are the view's children: rows 24 pixels high without
    /// numbers, the last column as wide as it can be, arrows to move, typing, F2 or a click on the current cell to
    /// edit, Tab to leave.
    void setUp(LineCountProxyModel* proxy, LineTableDelegate* delegate);
    /// An entry of the context menu, whose work can be taken back as a whole.
    QAction* addMenuAction(const QString& text, const std::function<void()>& work);
    /// The list of a choice opens with its cell when the user asks for the cell, by mouse or F2.
    bool edit(const QModelIndex& index, EditTrigger trigger, QEvent* event) override;
    /// From now on the column after the names shares the free width with the last one.
    void shareFreeWidth();
    /// The texts of a column in the visible rows.
    QStringList getTexts(int column) const;

private:
    void paste();
    void clearColumn();

    const QString _group;
    Change _change = [](const QString&, const std::function<void()>& work) { work(); };
    LineTableModel* const _model;
    LineCountProxyModel* _proxy = nullptr;
};

} // namespace Velmora
