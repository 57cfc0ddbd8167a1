#include <velmora/LineTableView.h>

#include <velmora/LineTable.h>

#include <QHeaderView>

namespace Velmora {

namespace {

constexpr int nameWidth = 52; // pixels

} // namespace

LineTableView::LineTableView(const QString& name, const QString& formGroup, LineTableModel* model)
    : _group(formGroup + "/" + name), _model(model) {
    setObjectName(name);
}

void LineTableView::setUp(LineCountProxyModel* proxy, LineTableDelegate* delegate) {
    _proxy = proxy;
    setUpLineTable(this, _model, proxy, delegate);
    setColumnWidth(0, nameWidth);
    setColumnWidth(_model->columnCount() - 1, 0); // it would not become narrower than the default width otherwise
    horizontalHeader()->setSectionResizeMode(1, QHeaderView::Stretch);
    horizontalHeader()->setTextElideMode(Qt::ElideRight);
}

int LineTableView::getRowCount() const {
    return _proxy->rowCount();
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
    _proxy->invalidateFilter();
}

} // namespace Velmora
