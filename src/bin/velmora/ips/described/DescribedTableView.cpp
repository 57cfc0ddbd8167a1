#include <velmora/ips/described/DescribedTableView.h>

#include <velmora/form/Form.h>
#include <velmora/form/GenerationMarks.h>
#include <velmora/ips/described/DescribedEditor.h>
#include <velmora/ips/described/PythonText.h>
#include <velmora/tables/LineCountProxyModel.h>
#include <velmora/tables/LineTableDelegate.h>

#include <Brindle/core/Label.h>
#include <Brindle/core/Text.h>

#include <QSpinBox>

#include <algorithm>

namespace Velmora {

namespace {

using Column = DescribedTable::Column;

LineTableModel* createModel(const DescribedTable& description) {
    std::vector<LineColumn> columns;
    for (const Column& column : description.columns) {
        const DescribedEditor made = std::visit([](const auto& kind) { return makeEditor(kind); }, column.kind);
        columns.push_back({QString::fromStdString(column.title), made.editor->toText(made.reset), made.editor});
    }
    return new LineTableModel(QObject::tr("Line"), QString(), std::move(columns));
}

// What the script receives for the text of a cell.

std::string toPython(const DescribedText&, const QString& text) {
    return toPythonText(text.toStdString());
}

std::string toPython(const DescribedNumber&, const QString& text) {
    return text.toStdString();
}

std::string toPython(const DescribedDecimal&, const QString& text) {
    return Brindle::getLabel(text.toDouble());
}

std::string toPython(const DescribedChoice& choice, const QString& text) {
    const auto item = std::ranges::find(choice.items, text.toStdString(), &DescribedChoice::Item::text);
    if (item == choice.items.end())
        throw Brindle::InternalError("Should not be here");
    return toPythonText(item->value);
}

void requirePrintable(const QString& text, const std::string& argument) {
    const std::string value = text.toStdString();
    if (std::ranges::any_of(value, Brindle::isControl)) {
        throw Brindle::withFields(Brindle::InvalidRequest("Unsupported character in value"),
                                  {{"key", argument}, {"value", value}});
    }
}

} // namespace

class DescribedTableView::CountProxyModel : public LineCountProxyModel {
public:
    explicit CountProxyModel(DescribedTableView* view) : LineCountProxyModel(view), _view(view) {}

private:
    int getLineCount() const override { return _view->_count ? _view->_count->value() : 0; }

    DescribedTableView* const _view;
};

DescribedTableView::DescribedTableView(const QString& key, const QString& formGroup, const DescribedTable& description)
    : LineTableView(key, formGroup, createModel(description)), _description(description) {
    setAccessibleName(key);
    setUp(new CountProxyModel(this), new LineTableDelegate(this, getModel()));
    shareFreeWidth();
}

void DescribedTableView::setCount(const QSpinBox* count) {
    _count = count;
    connect(count, qOverload<int>(&QSpinBox::valueChanged), this, &LineTableView::invalidateFilter);
    invalidateFilter();
}

QStandardItem* DescribedTableView::getCell(int row, std::size_t column) const {
    return getModel()->item(row, static_cast<int>(column) + 1);
}

QStandardItem* DescribedTableView::findCell(const QString& row, const QString& title) const {
    const auto column = std::ranges::find(_description.columns, title.toStdString(), &Column::title);
    bool isNumber = false;
    const int line = row.toInt(&isNumber);
    const bool exists = isNumber && line >= 0 && line < getRowCount() && column != _description.columns.end();
    return exists ? getCell(line, static_cast<std::size_t>(column - _description.columns.begin())) : nullptr;
}

std::string DescribedTableView::toPython(const Form& form, const std::string& argument) {
    std::vector<std::string> lines;
    for (int row = 0; row < getRowCount(); ++row) {
        std::vector<std::string> cells;
        for (std::size_t column = 0; column < _description.columns.size(); ++column) {
            QStandardItem* cell = getCell(row, column);
            markRefused(form, {CheckedCell{this, cell}}, [&] { requirePrintable(cell->text(), argument); });
            cells.push_back(std::visit([&](const auto& kind) { return Velmora::toPython(kind, cell->text()); },
                                       _description.columns[column].kind));
        }
        lines.push_back(toPythonTuple(cells));
    }
    return toPythonList(lines);
}

} // namespace Velmora
