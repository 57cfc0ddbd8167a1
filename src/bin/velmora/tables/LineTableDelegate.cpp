#include <velmora/tables/LineTableDelegate.h>

#include <Brindle/widgets/Theme.h>

#include <QHelpEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QTableView>
#include <QToolTip>

namespace Velmora {

LineTableDelegate::LineTableDelegate(QTableView* view, const LineTableModel* model)
    : Brindle::TableDelegate(view), _view(view), _model(model) {}

const FieldEditor* LineTableDelegate::getEditor(const QModelIndex& index) const {
    return _model->getEditor(index.column());
}

const FieldEditor& LineTableDelegate::requireEditor(const QModelIndex& index) const {
    if (const FieldEditor* editor = _model->getEditor(index.column()))
        return *editor;
    throw Brindle::located(Brindle::InternalError("Should not be here"), BRINDLE_HERE);
}

QWidget* LineTableDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem&, const QModelIndex& index) const {
    const FieldEditor* editor = getEditor(index);
    if (!editor)
        return nullptr;
    QWidget* widget = editor->create(parent);
    widget->setAccessibleName(index.siblingAtColumn(0).data().toString() + ", " +
                              _model->headerData(index.column(), Qt::Horizontal).toString());
    return widget;
}

void LineTableDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const {
    requireEditor(index).setText(editor, index.data(Qt::EditRole).toString());
}

void LineTableDelegate::setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const {
    model->setData(index, requireEditor(index).getText(editor));
}

void LineTableDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
    Brindle::TableDelegate::paint(painter, option, index);
    if (getProblem(index).isEmpty())
        return;
    const bool hasFocus = option.state.testFlag(QStyle::State_HasFocus);
    const int inset = hasFocus ? 1 : 0; // the frame of the focus lies around it
    painter->setPen(Brindle::theme.getColor("error"));
    painter->drawRect(option.rect.adjusted(inset, inset, -inset - 1, -inset - 1));
}

QString LineTableDelegate::getProblem(const QModelIndex& index) const {
    return index.data(LineTableModel::ProblemRole).toString();
}

bool LineTableDelegate::helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                                  const QModelIndex& index) {
    const QString problem = event->type() == QEvent::ToolTip ? getProblem(index) : QString();
    if (problem.isEmpty())
        return Brindle::TableDelegate::helpEvent(event, view, option, index);
    QToolTip::showText(event->globalPos(), problem, view);
    return true;
}

bool LineTableDelegate::eventFilter(QObject* object, QEvent* event) {
    auto* editor = qobject_cast<QWidget*>(object);
    const int key = editor && event->type() == QEvent::KeyPress ? static_cast<QKeyEvent*>(event)->key() : 0;
    if (key != Qt::Key_Tab && key != Qt::Key_Backtab)
        return Brindle::TableDelegate::eventFilter(object, event);
    Q_EMIT commitData(editor);
    Q_EMIT closeEditor(editor, QAbstractItemDelegate::NoHint);
    editNext(key == Qt::Key_Tab ? 1 : -1);
    return true;
}

/// Goes through the cells row by row; at the ends of the table the current cell stays.
void LineTableDelegate::editNext(int step) {
    const QAbstractItemModel* cells = _view->model();
    const int columnCount = cells->columnCount();
    const QModelIndex current = _view->currentIndex();
    for (int cell = current.row() * columnCount + current.column() + step;
         cell >= 0 && cell < cells->rowCount() * columnCount; cell += step) {
        const QModelIndex index = cells->index(cell / columnCount, cell % columnCount);
        if (!getEditor(index))
            continue;
        _view->setCurrentIndex(index);
        _view->edit(index);
        return;
    }
}

} // namespace Velmora
