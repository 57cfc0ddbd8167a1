#include <velmora/tables/LineTableView.h>

#include <velmora/tables/LineCountProxyModel.h>
#include <velmora/tables/LineTableDelegate.h>

#include <Brindle/core/Console.h>
#include <Brindle/widgets/Theme.h>

#include <QAction>
#include <QClipboard>
#include <QComboBox>
#include <QGuiApplication>
#include <QHeaderView>

#include <vector>

namespace Velmora {

namespace {

// Pixels.
constexpr int nameWidth = 52;
constexpr int lineHeight = 24;
constexpr int leastHeight = 224; // the header and eight rows

} // namespace

LineTableView::LineTableView(const QString& name, const QString& formGroup, LineTableModel* model)
    : _group(formGroup + "/" + name), _model(model) {
    setObjectName(name);
}

void LineTableView::setUp(LineCountProxyModel* proxy, LineTableDelegate* delegate) {
    _proxy = proxy;
    _model->setParent(proxy);
    proxy->setSourceModel(_model);
    setModel(proxy);
    setItemDelegate(delegate);
    Brindle::theme.enrich(this);

    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::SelectedClicked |
                    QAbstractItemView::EditKeyPressed | QAbstractItemView::AnyKeyPressed);
    setTabKeyNavigation(false);
    verticalHeader()->hide();
    verticalHeader()->setMinimumSectionSize(lineHeight); // the font's height would be the least otherwise
    verticalHeader()->setDefaultSectionSize(lineHeight);
    horizontalHeader()->setStretchLastSection(true);
    setMinimumHeight(leastHeight);

    setContextMenuPolicy(Qt::ActionsContextMenu);
    QAction* pasteAction = addMenuAction(tr("&Paste"), [this] { paste(); });
    pasteAction->setShortcut(QKeySequence::Paste);
    pasteAction->setShortcutContext(Qt::WidgetShortcut);
    addMenuAction(tr("C&lear column"), [this] { clearColumn(); });
}

QAction* LineTableView::addMenuAction(const QString& text, const std::function<void()>& work) {
    auto* action = new QAction(text, this);
    connect(action, &QAction::triggered, this, [this, action, work] { _change(action->text().remove('&'), work); });
    addAction(action);
    return action;
}

bool LineTableView::edit(const QModelIndex& index, EditTrigger trigger, QEvent* event) {
    const bool isEditing = QTableView::edit(index, trigger, event);
    auto* combo = isEditing ? qobject_cast<QComboBox*>(indexWidget(index)) : nullptr;
    if (combo && (trigger == DoubleClicked || trigger == SelectedClicked || trigger == EditKeyPressed))
        combo->showPopup();
    return isEditing;
}

/// The lines of the clipboard go into the visible rows from the current cell on, their columns, which tabs separate, to
/// its right. Nothing changes when a cell cannot hold its text.
void LineTableView::paste() {
    struct Cell {
        QStandardItem* item;
        QString text;
    };
    std::vector<Cell> cells;
    const QModelIndex start = currentIndex();
    int row = start.row();
    for (const QString& line : QGuiApplication::clipboard()->text().remove('\r').split('\n')) {
        int column = start.column();
        for (const QString& part : line.split('\t')) {
            const QString text = part.trimmed();
            if (row < 0 || row >= getRowCount() || column < 1 || column >= _model->columnCount())
                continue;
            if (!_model->canHold(column, text)) {
                Brindle::console.error("'" + text.toStdString() + "' cannot be pasted, expected " +
                                       _model->getEditor(column)->getExpectation().toStdString());
                return;
            }
            cells.push_back({_model->item(row, column++), text});
        }
        ++row;
    }
    for (const Cell& cell : cells)
        cell.item->setText(cell.text);
}

void LineTableView::clearColumn() {
    for (int row = 0; row < getRowCount() && currentIndex().column() > 0; ++row)
        _model->clearCell(row, currentIndex().column());
}

void LineTableView::shareFreeWidth() {
    setColumnWidth(0, nameWidth);
    setColumnWidth(_model->columnCount() - 1, 0); // it would not become narrower than the default width otherwise
    horizontalHeader()->setSectionResizeMode(1, QHeaderView::Stretch);
    horizontalHeader()->setTextElideMode(Qt::ElideRight);
}

int LineTableView::getRowCount() const {
    return _proxy->rowCount();
}

QModelIndex LineTableView::toShown(const QModelIndex& index) const {
    return _proxy->mapFromSource(index);
}

QStringList LineTableView::getTexts(int column) const {
    return _model->getTexts(column, getRowCount());
}

void LineTableView::initialize() {
    _model->initialize();
}

void LineTableView::load() {
    _model->load(_group);
}

void LineTableView::save() const {
    _model->save(_group);
}

void LineTableView::invalidateFilter() {
    if (QWidget* editor = indexWidget(currentIndex())) { // it must not write while the proxy takes its row away
        commitData(editor);
        closeEditor(editor, QAbstractItemDelegate::NoHint);
    }
    _proxy->invalidateFilter();
}

} // namespace Velmora
