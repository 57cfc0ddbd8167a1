#pragma once

#include <QStyledItemDelegate>

QT_BEGIN_NAMESPACE
class QAbstractItemView;
QT_END_NAMESPACE

namespace Brindle {

/// Base of the delegates of tables that are filled in like a spreadsheet: an editor takes the whole cell; Return keeps
/// the value and goes one row down, Shift+Return one row up, Tab and Shift+Tab go sideways, Escape drops the change; a
/// choice from a combo box is kept at once.
class TableDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    /// The editor takes the cell's rectangle.
    void updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                              const QModelIndex& index) const override;

protected:
    bool eventFilter(QObject* object, QEvent* event) override;

private Q_SLOTS:
    void onChoiceMade();

private:
    void commitAndMove(QWidget* editor, int rows);
};

} // namespace Brindle
