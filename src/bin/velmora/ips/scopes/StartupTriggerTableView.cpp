#include <velmora/ips/scopes/StartupTriggerTableView.h>

#include <velmora/fields/ChoiceEditor.h>
#include <velmora/fields/TextEditor.h>
#include <velmora/ips/scopes/TriggerForm.h>
#include <velmora/tables/LineCountProxyModel.h>
#include <velmora/tables/LineTableDelegate.h>

namespace Velmora {

namespace {

enum Column { inputColumn, aliasColumn, valueColumn };

LineTableModel* createModel() {
    const QStringList& headers = StartupTriggerTableView::getHeaderList();
    const QStringList levels{"0", "1"};
    return new LineTableModel(
        headers.at(inputColumn), QStringLiteral("Trig"),
        {{headers.at(aliasColumn), QString(), std::make_shared<const TextEditor>()},
         {headers.at(valueColumn), levels.first(), std::make_shared<const ChoiceEditor>(levels)}});
}

} // namespace

/// Shows as many lines as the form counts triggers.
class StartupTriggerTableView::SortFilterProxyModel : public LineCountProxyModel {
public:
    explicit SortFilterProxyModel(StartupTriggerTableView* view) : LineCountProxyModel(view), _view(view) {}

private:
    int getLineCount() const override { return _view->_form.getTriggerCount(); }

    StartupTriggerTableView* const _view;
};

/// Every column has the editor that the model declares.
class StartupTriggerTableView::TableViewDelegate : public LineTableDelegate {
public:
    using LineTableDelegate::LineTableDelegate;
};

StartupTriggerTableView::StartupTriggerTableView(const TriggerForm& form)
    : LineTableView(QStringLiteral("StartupTriggerTableView"), form.getSettingsGroup(), createModel()), _form(form) {
    setAccessibleName(tr("Values of the trigger lines"));
    setUp(new SortFilterProxyModel(this), new TableViewDelegate(this, getModel()));
    shareFreeWidth();
}

const QStringList& StartupTriggerTableView::getHeaderList() {
    static const QStringList headers{tr("Input"), tr("Alias"), tr("Trigger value")};
    return headers;
}

QStringList StartupTriggerTableView::getTriggerValueList() const {
    return getTexts(valueColumn);
}

} // namespace Velmora
