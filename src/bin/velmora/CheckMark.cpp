#include <velmora/CheckMark.h>

#include <velmora/FoldWidget.h>
#include <velmora/LineTableModel.h>
#include <velmora/LineTableView.h>

#include <QAbstractItemView>
#include <QMetaMethod>
#include <QMetaProperty>
#include <QStyle>

#include <utility>

namespace Velmora {

namespace {

/// An empty problem takes the mark off.
void mark(QWidget* widget, const QString& problem) {
    widget->setProperty("refused", !problem.isEmpty());
    widget->setAccessibleDescription(problem);
    widget->style()->unpolish(widget); // the style sheet looks at properties only when it is applied
    widget->style()->polish(widget);
}

void mark(const CheckedCell& cell, const QString& problem) {
    cell.item->setData(problem.isEmpty() ? QVariant() : problem, LineTableModel::ProblemRole);
}

void reveal(const QWidget* widget) {
    for (QWidget* ancestor = widget->parentWidget(); ancestor; ancestor = ancestor->parentWidget()) {
        if (auto* section = qobject_cast<FoldWidget*>(ancestor))
            section->open();
    }
}

void reveal(const CheckedCell& cell) {
    reveal(cell.table);
}

} // namespace

void CheckMark::set(const CheckedParts& parts, const QString& problem) {
    clear();
    _parts = parts;
    for (const CheckedPart& part : _parts) {
        std::visit(
            [&](const auto& marked) {
                mark(marked, problem);
                reveal(marked);
                watch(marked);
            },
            part);
    }
}

void CheckMark::clear() {
    for (const QMetaObject::Connection& watch : std::exchange(_watches, {}))
        disconnect(watch);
    for (const CheckedPart& part : std::exchange(_parts, {}))
        std::visit([](const auto& marked) { mark(marked, QString()); }, part);
}

void CheckMark::watch(QWidget* editor) {
    if (const auto* view = qobject_cast<QAbstractItemView*>(editor)) {
        watchCells(view->model(), [](const QModelIndex&) { return true; });
        return;
    }
    const QMetaMethod edited = editor->metaObject()->userProperty().notifySignal(); // of its text, value or choice
    _watches.push_back(connect(editor, edited, this, metaObject()->method(metaObject()->indexOfSlot("clear()"))));
}

void CheckMark::watch(const CheckedCell& cell) {
    watchCells(cell.item->model(), [item = cell.item](const QModelIndex& index) { return index == item->index(); });
}

void CheckMark::watchCells(const QAbstractItemModel* model, const std::function<bool(const QModelIndex&)>& isWatched) {
    const auto onDataChanged = [this, isWatched](const QModelIndex& index, const QModelIndex&,
                                                 const QVector<int>& roles) {
        if (roles.contains(Qt::EditRole) && isWatched(index)) // and not the mark itself
            clear();
    };
    _watches.push_back(connect(model, &QAbstractItemModel::dataChanged, this, onDataChanged));
}

} // namespace Velmora
