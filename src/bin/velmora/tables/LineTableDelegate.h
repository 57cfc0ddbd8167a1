#pragma once

#include <velmora/tables/LineTableModel.h>

#include <Brindle/widgets/TableDelegate.h>

QT_BEGIN_NAMESPACE
class QTableView;
QT_END_NAMESPACE

namespace Velmora {

/// Gives the cells of a table of lines the editors that their columns declare. Tab and Shift+Tab keep the value and
/// open the next and the last cell that can be filled in.
class LineTableDelegate : public Brindle::TableDelegate {
    Q_OBJECT

public:
    /// The view owns the delegate; the model is kept, not owned.
    LineTableDelegate(QTableView* view, const LineTableModel* model);

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    void setEditorData(QWidget* editor, const QModelIndex& index) const override;
    void setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override;
    /// Frames a cell that something is wrong with.
    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    /// Tells what is wrong with a cell.
    bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                   const QModelIndex& index) override;

protected:
    bool eventFilter(QObject* object, QEvent* event) override;
    /// How the cell is filled in as the form now stands; null for a cell that is not.
    virtual const FieldEditor* getEditor(const QModelIndex& index) const;
    /// What is wrong with the cell: what the last check of the form refused, unless a table knows more; else empty.
    virtual QString getProblem(const QModelIndex& index) const;

private:
    const FieldEditor& requireEditor(const QModelIndex& index) const;
    void editNext(int step);

    QTableView* const _view;
    const LineTableModel* const _model;
};

} // namespace Velmora
