#include <velmora/form/CheckMark.h>

#include <velmora/tables/LineTableModel.h>
#include <velmora/tables/LineTableView.h>
#include <velmora/widgets/FoldWidget.h>

#include <QAbstractItemView>
#include <QMetaMethod>
#include <QMetaProperty>
#include <QScrollArea>
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

/// Scrolls the form to the part of the widget.
void scrollTo(const QWidget* widget, const QRect& part) {
    constexpr int margin = 8; // pixels
    for (QWidget* ancestor = widget->parentWidget(); ancestor; ancestor = ancestor->parentWidget()) {
        if (auto* area = qobject_cast<QScrollArea*>(ancestor)) {
            const QPoint center = widget->mapTo(area->widget(), part.center());
            area->ensureVisible(center.x(), center.y(), 0, part.height() / 2 + margin);
            return;
        }
    }
}

void scrollTo(const QWidget* widget) {
    scrollTo(widget, widget->rect());
}

void scrollTo(const CheckedCell& cell) {
    const QModelIndex index = cell.table->toShown(cell.item->index());
    cell.table->scrollTo(index);
    scrollTo(cell.table->viewport(), cell.table->visualRect(index));
}

QString keyOf(const QWidget* widget) {
    return widget->objectName();
}

QString keyOf(const CheckedCell& cell) {
    return cell.table->objectName() + "/" + QString::number(cell.item->row());
}

const QWidget* widgetOf(const QWidget* widget) {
    return widget;
}

const QWidget* widgetOf(const CheckedCell& cell) {
    return cell.table;
}

} // namespace

void CheckMark::set(const CheckedParts& parts, const QString& problem) {
    clear();
    _parts = parts;
    _problem = problem;
    for (const CheckedPart& part : _parts) {
        std::visit(
            [&](const auto& marked) {
                mark(marked, problem);
                watch(marked);
            },
            part);
    }
    for (const CheckedPart& part : _parts)
        std::visit([this](const auto& marked) { openSections(widgetOf(marked)); }, part);
    scrollToFirst();
}

void CheckMark::openSections(const QWidget* widget) {
    for (QWidget* ancestor = widget->parentWidget(); ancestor; ancestor = ancestor->parentWidget()) {
        auto* section = qobject_cast<FoldWidget*>(ancestor);
        if (!section || section->isOpen())
            continue;
        connect(section, &FoldWidget::opened, this, [this, section] {
            disconnect(section, &FoldWidget::opened, this, nullptr);
            scrollToFirst();
        });
        section->open();
    }
}

void CheckMark::scrollToFirst() {
    if (!_parts.empty())
        std::visit([](const auto& marked) { scrollTo(marked); }, _parts.front());
}

void CheckMark::clear() {
    for (const QMetaObject::Connection& watch : std::exchange(_watches, {}))
        disconnect(watch);
    _problem.clear();
    for (const CheckedPart& part : std::exchange(_parts, {}))
        std::visit([](const auto& marked) { mark(marked, QString()); }, part);
}

QStringList CheckMark::getKeys() const {
    QStringList keys;
    for (const CheckedPart& part : _parts)
        keys += std::visit([](const auto& marked) { return keyOf(marked); }, part);
    keys.removeDuplicates();
    return keys;
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
