#include <velmora/form/FormHistory.h>

#include <velmora/tables/LineTableModel.h>
#include <velmora/tables/LineTableView.h>
#include <velmora/widgets/CellEdit.h>

#include <QStandardItem>
#include <QUndoCommand>

#include <memory>
#include <utility>

namespace Velmora {

namespace {

struct KeptField {
    const FormField* field;
    QVariant value;
};

struct KeptCell {
    QStandardItem* item;
    QString text;
};

} // namespace

class FormHistory::Step : public QUndoCommand {
public:
    /// With what the form holds before the work.
    Step(const QString& name, const std::vector<FormField>& fields, const std::vector<FormTable>& tables)
        : QUndoCommand(name) {
        for (const FormField& field : fields)
            _fields.push_back({&field, field.getValue()});
        for (const FormTable& table : tables) {
            const LineTableModel& model = *table.view->getModel();
            for (int row = 0; row < model.rowCount(); ++row) {
                for (int column = 1; column < model.columnCount(); ++column)
                    _cells.push_back({model.item(row, column), model.item(row, column)->text()});
            }
        }
    }

    /// Forgets what the work has left as it was. False when that is everything.
    bool complete() {
        std::erase_if(_fields, [](const KeptField& kept) { return kept.field->getValue() == kept.value; });
        std::erase_if(_cells, [](const KeptCell& kept) { return kept.item->text() == kept.text; });
        return !_fields.empty() || !_cells.empty();
    }

    void undo() override { exchange(); }
    void redo() override {
        if (!std::exchange(_isFirst, false)) // the work is done already when the step joins the history
            exchange();
    }

private:
    void exchange() {
        finishCellEdit();
        for (KeptField& kept : _fields) {
            const QVariant present = kept.field->getValue();
            kept.field->setValue(std::exchange(kept.value, present));
        }
        for (KeptCell& kept : _cells) {
            const QString present = kept.item->text();
            kept.item->setText(std::exchange(kept.text, present));
        }
    }

    std::vector<KeptField> _fields;
    std::vector<KeptCell> _cells;
    bool _isFirst = true;
};

FormHistory::FormHistory(const std::vector<FormField>& fields, const std::vector<FormTable>& tables, QObject* parent)
    : QUndoStack(parent), _fields(fields), _tables(tables) {}

void FormHistory::change(const QString& name, const std::function<void()>& work) {
    finishCellEdit();
    auto step = std::make_unique<Step>(name, _fields, _tables);
    work();
    if (step->complete())
        push(step.release());
}

} // namespace Velmora
