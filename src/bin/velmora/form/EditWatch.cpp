#include <velmora/form/EditWatch.h>

#include <QAbstractItemView>
#include <QMetaMethod>
#include <QMetaProperty>

namespace Velmora {

void EditWatch::add(const QWidget* editor) {
    if (const auto* view = qobject_cast<const QAbstractItemView*>(editor)) {
        add(view->model());
        return;
    }
    const QMetaMethod changed = editor->metaObject()->userProperty().notifySignal(); // of its text, value or choice
    connect(editor, changed, this, QMetaMethod::fromSignal(&EditWatch::edited));
}

void EditWatch::add(const QAbstractItemModel* model, const QPersistentModelIndex& cell) {
    const auto onDataChanged = [this, cell](const QModelIndex& index, const QModelIndex&, const QVector<int>& roles) {
        if (roles.contains(Qt::EditRole) && (!cell.isValid() || cell == index)) // and not a mark
            Q_EMIT edited();
    };
    connect(model, &QAbstractItemModel::dataChanged, this, onDataChanged);
}

} // namespace Velmora
