#pragma once

#include <velmora/catalogue/GeneratorLeaf.h>
#include <velmora/ips/scopes/ScopeForm.h>
#include <velmora/ips/scopes/TriggerForm.h>
#include <velmora/rules/ArgumentDictionary.h>

#include <Brindle/core/Exception.h>

#include <QWidget>

#include <string>

namespace Velmora {

class IPLeaf;
class StartupTriggerTableView;

/// The form of the startup scope, which captures its input lines once, when its trigger lines show a pattern of bits.
class StartupScopeLeaf : public QWidget, public GeneratorLeaf, public TriggerForm {
    Q_OBJECT

public:
    /// The IP leaf, kept and not owned, gives the script.
    explicit StartupScopeLeaf(IPLeaf* ipLeaf);
    ~StartupScopeLeaf() override;

    Form& getForm() final { return _scope.getForm(); }
    int getTriggerCount() const override { return _scope.getTriggerCount(); }
    const QString& getSettingsGroup() const override { return _scope.getGroup(); }

    /// The VHDL string literal of the levels, that of line 0 rightmost: `"001"` for 1, 0 and 0.
    std::string getTriggerValueString(const QStringList& values) const;

    /// Tells the first thing that is wrong with the form; true when nothing is.
    bool isFullyConfigured() const { return _scope.isFullyConfigured(); }
    /// What the script is given. Throws Brindle::InvalidRequest for a name that cannot be passed.
    ArgumentDictionary getArguments() const {
        return Brindle::locatedAt(BRINDLE_HERE, [this] { return makeArguments(); });
    }
    /// Runs the script on the form's values. Throws what the runner and `getArguments` throw.
    QString getIP() const;
    Generation getGeneration() const override;
    void load() { _scope.load(); }
    void save() { _scope.save(); }

public Q_SLOTS:
    void onReset() { _scope.reset(); }
    void onTriggerCountChange();
    void onGenerate();

private:
    ArgumentDictionary makeArguments() const;
    void addCaptureConfiguration();
    void addTriggerConfiguration();

    IPLeaf* const _ipLeaf;
    ScopeForm _scope;
    StartupTriggerTableView* _triggerTable = nullptr;
};

} // namespace Velmora
