#include <velmora/ips/scopes/TriggerTableView.h>

#include <velmora/fields/ChoiceEditor.h>
#include <velmora/fields/TextEditor.h>
#include <velmora/ips/scopes/TriggerCodes.h>
#include <velmora/ips/scopes/TriggerForm.h>
#include <velmora/tables/LineCountProxyModel.h>
#include <velmora/tables/LineTableDelegate.h>

#include <Brindle/widgets/Theme.h>

#include <QAbstractItemView>
#include <QComboBox>

namespace Velmora {

namespace {

enum Column { inputColumn, aliasColumn, valueColumn, firstLevelColumn };

constexpr int valueWidth = 116; // pixels, an open editor shows every value whole

LineTableModel* createModel() {
    const QStringList& headers = TriggerTableView::getHeaderList();
    const auto values = std::make_shared<const ChoiceEditor>(getTriggerValues(true));
    return new LineTableModel(headers.at(inputColumn), QStringLiteral("Trig"),
                              {{headers.at(aliasColumn), QString(), std::make_shared<const TextEditor>()},
                               {headers.at(valueColumn), getIgnoreLabel(), values},
                               {headers.at(firstLevelColumn), getIgnoreLabel(), values}});
}

} // namespace

/// Shows as many lines as the form counts triggers.
class TriggerTableView::SortFilterProxyModel : public LineCountProxyModel {
public:
    explicit SortFilterProxyModel(TriggerTableView* view) : LineCountProxyModel(view), _view(view) {}

private:
    int getLineCount() const override { return _view->_form.getTriggerCount(); }

    TriggerTableView* const _view;
};

/// Offers what the form's trigger mode knows, and the first level only where there is one. A value that the mode does
/// not know is drawn as an error and stays until another one is chosen.
class TriggerTableView::TableViewDelegate : public LineTableDelegate {
public:
    TableViewDelegate(TriggerTableView* view, LineTableModel* model) : LineTableDelegate(view, model), _view(view) {}

    /// The list of a combo box shows its items whole in a narrow column too.
    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override {
        QWidget* editor = LineTableDelegate::createEditor(parent, option, index);
        if (auto* combo = qobject_cast<QComboBox*>(editor))
            combo->view()->setMinimumWidth(combo->view()->sizeHintForColumn(0) + 2 * combo->view()->frameWidth());
        return editor;
    }

    void setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override {
        const auto* combo = qobject_cast<QComboBox*>(editor);
        if (combo && combo->currentIndex() < 0)
            return;
        LineTableDelegate::setModelData(editor, model, index);
    }

protected:
    const FieldEditor* getEditor(const QModelIndex& index) const override {
        if (index.column() == firstLevelColumn && !_view->_form.isMultipleLevel())
            return nullptr;
        const bool isValue = index.column() == valueColumn || index.column() == firstLevelColumn;
        return isValue && !_view->_form.hasEdges() ? &_levels : LineTableDelegate::getEditor(index);
    }

    QString getProblem(const QModelIndex& index) const override {
        if (_view->isUnsupported(index.row(), index.column()))
            return TriggerTableView::tr("Basic triggers know no edges, choose another value.");
        return LineTableDelegate::getProblem(index);
    }

    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
        LineTableDelegate::initStyleOption(option, index);
        if (index.column() == firstLevelColumn && !getEditor(index))
            option->state.setFlag(QStyle::State_Enabled, false);
        if (_view->isUnsupported(index.row(), index.column()))
            option->palette.setColor(QPalette::Text, Brindle::theme.getColor("error"));
    }

private:
    const ChoiceEditor _levels{getTriggerValues(false)};
    TriggerTableView* const _view;
};

TriggerTableView::TriggerTableView(const TriggerForm& form)
    : LineTableView(QStringLiteral("TriggerTableView"), form.getSettingsGroup(), createModel()), _form(form) {
    setAccessibleName(tr("Values of the trigger lines"));
    getModel()->setHeaderData(firstLevelColumn, Qt::Horizontal,
                              tr("First level trigger value, for \"Multiple level trigger\" only"), Qt::ToolTipRole);
    setUp(new SortFilterProxyModel(this), new TableViewDelegate(this, getModel()));
    shareFreeWidth();
    setColumnWidth(valueColumn, valueWidth);
}

const QStringList& TriggerTableView::getHeaderList() {
    static const QStringList headers{tr("Input"), tr("Alias"), tr("Trigger value"), tr("First level trigger value")};
    return headers;
}

QStringList TriggerTableView::getTriggerValueList() const {
    return getTexts(valueColumn);
}

bool TriggerTableView::isUnsupported(int row, int column) const {
    const bool isInUse = column == valueColumn || (column == firstLevelColumn && _form.isMultipleLevel());
    return isInUse && !getTriggerCode(getModel()->item(row, column)->text(), _form.hasEdges());
}

std::vector<QStandardItem*> TriggerTableView::getUnsupportedCells() const {
    std::vector<QStandardItem*> cells;
    for (int row = 0; row < getRowCount(); ++row) {
        for (const int column : {valueColumn, firstLevelColumn}) {
            if (isUnsupported(row, column))
                cells.push_back(getModel()->item(row, column));
        }
    }
    return cells;
}

QStringList TriggerTableView::getFirstTriggerValueList() const {
    return getTexts(firstLevelColumn);
}

} // namespace Velmora
