#include <velmora/ips/serdes/LocationTableView.h>

#include <velmora/fields/ChoiceEditor.h>
#include <velmora/fields/NumberEditor.h>
#include <velmora/ips/serdes/LocationForm.h>
#include <velmora/tables/LineCountProxyModel.h>
#include <velmora/tables/LineTableDelegate.h>

#include <Brindle/widgets/Theme.h>

#include <QComboBox>

namespace Velmora {

namespace {

constexpr int locationColumn = 1;
constexpr int outputDelayColumn = 2;
constexpr int pairCount = 15; // pad pairs of a bank
constexpr int longestDelay = 63;

/// The pads of any bank: "01P", "01N", ..., "15N".
QStringList getPadNames() {
    QStringList names;
    for (int pair = 1; pair <= pairCount; ++pair) {
        const QString number = QString::number(pair).rightJustified(2, '0');
        names << number + "P" << number + "N";
    }
    return names;
}

QString getModeName(LocationTableView::Mode mode) {
    return mode == LocationTableView::SER ? "SER" : "DES";
}

LineTableModel* createModel(LocationTableView::Mode mode) {
    const QStringList headers = LocationTableView::getHeaderList(mode);
    std::vector<LineColumn> columns{
        {headers.at(locationColumn), QString(), std::make_shared<const ChoiceEditor>(getPadNames())}};
    if (mode == LocationTableView::SER)
        columns.push_back({headers.at(outputDelayColumn), "0", std::make_shared<const NumberEditor>(0, longestDelay)});
    return new LineTableModel(headers.first(), getModeName(mode), columns);
}

} // namespace

/// Shows as many lines as the form counts in the table's mode.
class LocationTableView::SortFilterProxyModel : public LineCountProxyModel {
public:
    explicit SortFilterProxyModel(LocationTableView* view) : LineCountProxyModel(view), _view(view) {}

private:
    int getLineCount() const override {
        return _view->isSER() ? _view->_form.getSERCount() : _view->_form.getDESCount();
    }

    LocationTableView* const _view;
};

/// Tells of what bank the pads are.
class LocationTableView::TableViewDelegate : public LineTableDelegate {
public:
    TableViewDelegate(LocationTableView* view, LineTableModel* model) : LineTableDelegate(view, model), _view(view) {}

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override {
        QWidget* editor = LineTableDelegate::createEditor(parent, option, index);
        if (index.column() == locationColumn)
            completePads(*qobject_cast<QComboBox*>(editor));
        return editor;
    }

    QString getProblem(const QModelIndex& index) const override {
        const QString pad = index.data().toString();
        if (index.column() == locationColumn && !pad.isEmpty() && _view->_form.getLocations().count(pad) > 1)
            return LocationTableView::tr("Another line has this pad, choose a free one.");
        return LineTableDelegate::getProblem(index);
    }

private:
    /// Pads that lines have already are grey, but can be chosen.
    void completePads(QComboBox& combo) const {
        combo.setToolTip(LocationTableView::tr("Pad of bank %1").arg(_view->_form.getBankNumber()));
        const QStringList used = _view->_form.getLocations();
        for (int pad = 0; pad < combo.count(); ++pad) {
            if (used.contains(combo.itemText(pad)))
                combo.setItemData(pad, Brindle::theme.getColor("border"), Qt::ForegroundRole);
        }
    }

    LocationTableView* const _view;
};

LocationTableView::LocationTableView(Mode mode, const LocationForm& form)
    : LineTableView("LocationTableView/" + getModeName(mode), form.getSettingsGroup(), createModel(mode)),
      _mode(mode),
      _form(form) {
    setAccessibleName(tr("Locations of the %1 lines").arg(getModeName(mode)));
    setUp(new SortFilterProxyModel(this), new TableViewDelegate(this, getModel()));
    addMenuAction(tr("&Assign free pads in order"), [this] { assignFreePads(); });
}

void LocationTableView::assignFreePads() {
    const QStringList used = _form.getLocations();
    QStringList free = getPadNames();
    for (const QString& pad : used)
        free.removeAll(pad);
    for (QStandardItem* cell : getLocationCells()) {
        if (cell->text().isEmpty() && !free.isEmpty())
            cell->setText(free.takeFirst());
    }
}

QStringList LocationTableView::getHeaderList(Mode mode) {
    QStringList headers{tr("Line"), tr("Location")};
    if (mode == SER)
        headers += tr("Output delay line");
    return headers;
}

QStringList LocationTableView::getLocationList() const {
    return getTexts(locationColumn);
}

std::vector<QStandardItem*> LocationTableView::getLocationCells() const {
    std::vector<QStandardItem*> cells;
    cells.reserve(static_cast<std::size_t>(getRowCount()));
    for (int row = 0; row < getRowCount(); ++row)
        cells.push_back(getModel()->item(row, locationColumn));
    return cells;
}

QStringList LocationTableView::getOutputDelayList() const {
    QStringList delays;
    if (isDES())
        return delays;
    for (const QString& delay : getTexts(outputDelayColumn))
        delays += delay.rightJustified(2, '0');
    return delays;
}

} // namespace Velmora
