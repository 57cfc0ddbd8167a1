#include <velmora/tables/LineTableView.h>

#include <velmora/tables/LineCountProxyModel.h>
#include <velmora/tables/LineTableDelegate.h>

#include <Brindle/widgets/Theme.h>

#include <QHeaderView>

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
