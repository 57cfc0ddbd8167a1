#pragma once

#include <velmora/form/FormField.h>
#include <velmora/form/FormTable.h>

#include <QString>
#include <QUndoStack>

#include <functional>
#include <vector>

namespace Velmora {

/// What replaced values of a form and can be taken back: a reset, a configuration that was loaded. A step keeps the
/// fields and cells that it changed, those of hidden rows included, and leaves others alone; taking it back and doing
/// it again exchange what it keeps for what the user may have made of it since, so that nothing is ever lost.
class FormHistory : public QUndoStack {
    Q_OBJECT

public:
    /// Both are kept, not owned, and complete when the first step is made.
    FormHistory(const std::vector<FormField>& fields, const std::vector<FormTable>& tables, QObject* parent);

    /// Runs the work, and keeps what it changed as a step of that name. A cell that is being edited takes what was
    /// typed before.
    void change(const QString& name, const std::function<void()>& work);

private:
    class Step;

    const std::vector<FormField>& _fields;
    const std::vector<FormTable>& _tables;
};

} // namespace Velmora
