#include <velmora/form/CheckMark.h>

#include <velmora/form/EditWatch.h>
#include <velmora/tables/LineTableModel.h>
#include <velmora/tables/LineTableView.h>
#include <velmora/widgets/FoldWidget.h>

#include <QScrollArea>
#include <QStyle>

#include <algorithm>
#include <iterator>

namespace Velmora {

namespace {

/// An empty problem takes the mark off.
void mark(QWidget* widget, const QString& problem) {
    widget->setProperty("refused", !problem.isEmpty());
    widget->setAccessibleDescription(problem);
    widget->setToolTip(problem);
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

/// Scrolls to the part and gives it the focus, as if the user had come there by Tab.
void show(QWidget* widget) {
    widget->setFocus(Qt::TabFocusReason);
    scrollTo(widget, widget->rect());
}

void show(const CheckedCell& cell) {
    const QModelIndex index = cell.table->toShown(cell.item->index());
    cell.table->setFocus(Qt::TabFocusReason);
    cell.table->setCurrentIndex(index);
    cell.table->scrollTo(index);
    scrollTo(cell.table->viewport(), cell.table->visualRect(index));
}

QString keyOf(const QWidget* widget) {
    return widget->objectName();
}

QString keyOf(const CheckedCell& cell) {
    return cell.table->objectName() + "/" + QString::number(cell.item->row());
}

void watch(const QWidget* editor, EditWatch& watch) {
    watch.add(editor);
}

void watch(const CheckedCell& cell, EditWatch& watch) {
    watch.add(cell.item->model(), cell.item->index());
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
    add(parts, problem);
}

void CheckMark::add(const CheckedParts& parts, const QString& problem) {
    CheckedParts unmarked;
    std::ranges::copy_if(parts, std::back_inserter(unmarked),
                         [this](const CheckedPart& part) { return !isMarked(part); });
    if (unmarked.empty())
        return;
    const auto refusal = _refusals.insert(_refusals.end(), {unmarked, problem, new EditWatch(this)});
    connect(refusal->watch, &EditWatch::edited, this, [this, refusal] { remove(refusal); });
    for (const CheckedPart& part : unmarked) {
        std::visit(
            [&](const auto& marked) {
                mark(marked, problem);
                watch(marked, *refusal->watch);
                openSections(widgetOf(marked));
            },
            part);
    }
    showFirst();
    Q_EMIT refused();
}

bool CheckMark::isMarked(const CheckedPart& part) const {
    return std::ranges::any_of(_refusals, [&part](const Refusal& refusal) {
        return std::ranges::find(refusal.parts, part) != refusal.parts.end();
    });
}

void CheckMark::openSections(const QWidget* widget) {
    for (QWidget* ancestor = widget->parentWidget(); ancestor; ancestor = ancestor->parentWidget()) {
        auto* section = qobject_cast<FoldWidget*>(ancestor);
        if (!section || section->isOpen())
            continue;
        connect(section, &FoldWidget::opened, this, [this, section] {
            disconnect(section, &FoldWidget::opened, this, nullptr);
            showFirst();
        });
        section->open();
    }
}

void CheckMark::showFirst() {
    if (isSet())
        goTo(_refusals.front().parts);
}

void CheckMark::goTo(const CheckedParts& parts) {
    if (!parts.empty())
        std::visit([](const auto& part) { show(part); }, parts.front());
}

void CheckMark::clear() {
    while (isSet())
        remove(_refusals.begin());
}

QString CheckMark::getProblem() const {
    return isSet() ? _refusals.front().problem : QString();
}

QStringList CheckMark::getKeys() const {
    QStringList keys;
    for (const CheckedPart& part : isSet() ? _refusals.front().parts : CheckedParts())
        keys += std::visit([](const auto& marked) { return keyOf(marked); }, part);
    keys.removeDuplicates();
    return keys;
}

void CheckMark::remove(Place refusal) {
    disconnect(refusal->watch, nullptr, this, nullptr);
    refusal->watch->deleteLater(); // it may be what tells of the edit
    for (const CheckedPart& part : refusal->parts)
        std::visit([](const auto& marked) { mark(marked, QString()); }, part);
    _refusals.erase(refusal);
}

} // namespace Velmora
