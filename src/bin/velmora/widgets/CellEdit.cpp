#include <velmora/widgets/CellEdit.h>

#include <QAbstractItemView>
#include <QApplication>

namespace Velmora {

void finishCellEdit() {
    const QWidget* editor = QApplication::focusWidget();
    for (QWidget* ancestor = editor ? editor->parentWidget() : nullptr; ancestor; ancestor = ancestor->parentWidget()) {
        if (qobject_cast<QAbstractItemView*>(ancestor))
            ancestor->setFocus();
    }
}

} // namespace Velmora
