#pragma once

#include <QString>

namespace Velmora {

/// What the table of a scope's trigger lines asks of the form that holds it.
class TriggerForm {
public:
    TriggerForm(const TriggerForm&) = delete;
    TriggerForm& operator=(const TriggerForm&) = delete;

    virtual const QString& getSettingsGroup() const = 0;
    virtual int getTriggerCount() const = 0;
    /// True when trigger lines can wait for edges too.
    virtual bool hasEdges() const { return false; }
    /// True when the trigger waits for its first level before it looks at the other values.
    virtual bool isMultipleLevel() const { return false; }

protected:
    TriggerForm() = default;
    ~TriggerForm() = default;
};

} // namespace Velmora
