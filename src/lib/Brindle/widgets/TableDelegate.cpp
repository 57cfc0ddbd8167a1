#include <Brindle/widgets/TableDelegate.h>

#include <QAbstractItemView>
#include <QComboBox>
#include <QKeyEvent>

namespace Brindle {

namespace {

/// The view that shows the editor: the parent of the viewport that the editor lies on.
QAbstractItemView* viewOf(const QWidget* editor) {
    const QWidget* viewport = editor->parentWidget();
    return viewport ? qobject_cast<QAbstractItemView*>(viewport->parentWidget()) : nullptr;
}

} // namespace

void TableDelegate::updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                                         const QModelIndex&) const {
    editor->setGeometry(option.rect);
}

bool TableDelegate::eventFilter(QObject* object, QEvent* event) {
    auto* editor = qobject_cast<QWidget*>(object);
    if (editor && event->type() == QEvent::Show) {
        if (auto* comboBox = qobject_cast<QComboBox*>(editor))
            connect(comboBox, qOverload<int>(&QComboBox::activated), this, &TableDelegate::onChoiceMade,
                    Qt::UniqueConnection);
    }
    if (editor && event->type() == QEvent::KeyPress) {
        const auto* keyEvent = static_cast<QKeyEvent*>(event);
        if (keyEvent->key() == Qt::Key_Return || keyEvent->key() == Qt::Key_Enter) {
            commitAndMove(editor, keyEvent->modifiers().testFlag(Qt::ShiftModifier) ? -1 : 1);
            return true;
        }
    }
    return QStyledItemDelegate::eventFilter(object, event);
}

void TableDelegate::onChoiceMade() {
    Q_EMIT commitData(qobject_cast<QWidget*>(sender()));
}

void TableDelegate::commitAndMove(QWidget* editor, int rows) {
    QAbstractItemView* view = viewOf(editor);
    Q_EMIT commitData(editor);
    Q_EMIT closeEditor(editor, QAbstractItemDelegate::NoHint);
    if (!view)
        return;
    const QModelIndex current = view->currentIndex();
    const QModelIndex next = current.sibling(current.row() + rows, current.column());
    if (next.isValid())
        view->setCurrentIndex(next);
}

} // namespace Brindle
