#pragma once

#include <QStyledItemDelegate>

namespace Brindle {

/// Paints the rows of a combo box's popup as the style sheet says, and its separators as hairlines.
class PopupDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

} // namespace Brindle
