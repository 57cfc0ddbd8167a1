#include <velmora/LineTableView.h>

#include <velmora/LineTable.h>

namespace Velmora {

LineTableView::LineTableView(const QString& name, const QString& formGroup, LineTableModel* model)
    : _group(formGroup + "/" + name), _model(model) {
    setObjectName(name);
}

void LineTableView::setUp(LineCountProxyModel* proxy, LineTableDelegate* delegate) {
    _proxy = proxy;
    setUpLineTable(this, _model, proxy, delegate);
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
