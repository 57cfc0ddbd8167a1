#include <Brindle/widgets/PopupDelegate.h>

#include <QPainter>

namespace Brindle {

namespace {

constexpr int separatorHeight = 9; // pixels, the hairline in the middle

/// Combo boxes mark their separators so, see QComboBox::insertSeparator.
bool isSeparator(const QModelIndex& index) {
    return index.data(Qt::AccessibleDescriptionRole).toString() == QLatin1String("separator");
}

} // namespace

void PopupDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
    if (!isSeparator(index)) {
        QStyledItemDelegate::paint(painter, option, index);
        return;
    }
    const QRect& row = option.rect;
    painter->fillRect(row.left(), row.center().y(), row.width(), 1, option.palette.color(QPalette::Mid));
}

QSize PopupDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
    const QSize size = QStyledItemDelegate::sizeHint(option, index);
    return isSeparator(index) ? QSize(size.width(), separatorHeight) : size;
}

} // namespace Brindle
