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
class TriggerTableView;

/// The form of the scope, a logic analyser that is embedded in a design.
class ScopeLeaf : public QWidget, public GeneratorLeaf, public TriggerForm {
    Q_OBJECT

public:
    /// The IP leaf, kept and not owned, gives the script.
    explicit ScopeLeaf(IPLeaf* ipLeaf);
    ~ScopeLeaf() override;

    Form& getForm() final { return _scope.getForm(); }
    int getTriggerCount() const override { return _scope.getTriggerCount(); }
    bool hasEdges() const override;
    bool isMultipleLevel() const override { return _multipleLevelCombo->currentIndex() == 0; }
    const QString& getSettingsGroup() const override { return _scope.getGroup(); }

    /// The elements of the VHDL aggregate of the values' codes by line number from 0, such as `0 => "01", 1 => "11"`,
    /// without parentheses; empty for no value. Throws for a value that the trigger mode does not know: Brindle::Error
    /// "Unsupported value in basic trigger mode", with the fields "input" and "value", or Brindle::InternalError
    /// "Should not be here" where edges are looked at.
    std::string getTriggerValueString(const QStringList& values) const;

    /// Tells the first thing that is wrong with the form; true when nothing is.
    bool isFullyConfigured() const { return _scope.isFullyConfigured(); }
    /// What the script is given. Throws what `getTriggerValueString` throws, and Brindle::InvalidRequest for a name
    /// that cannot be passed.
    ArgumentDictionary getArguments() const {
        return Brindle::locatedAt(BRINDLE_HERE, [this] { return makeArguments(); });
    }
    /// Runs the script on the form's values. Throws what the runner and `getArguments` throw.
    QString getIP() const;
    Generation getGeneration() const override;
    void load();
    void save() { _scope.save(); }

public Q_SLOTS:
    void onReset() { _scope.reset(); }
    /// Enables what the mode needs. A disabled field still gives the script its value.
    void onCaptureModeChange();
    void onTriggerCountChange();
    void onGenerate();

private:
    /// `getTriggerValueString` of values that are in use.
    std::string getUsedValueString(const QStringList& values) const;
    ArgumentDictionary makeArguments() const;
    void addCaptureConfiguration();
    void addTriggerConfiguration();
    QComboBox* addOption(const QString& label, const QString& key);

    IPLeaf* const _ipLeaf;
    ScopeForm _scope;
    QComboBox* _captureModeCombo = nullptr;
    QSpinBox* _windowLength = nullptr;  // samples
    QSpinBox* _userDataDelay = nullptr; // clock cycles
    QComboBox* _storeTriggerCombo = nullptr;
    QComboBox* _storeWindowCombo = nullptr;
    QComboBox* _triggerModeCombo = nullptr;
    QComboBox* _multipleLevelCombo = nullptr;
    TriggerTableView* _triggerTable = nullptr;
};

} // namespace Velmora
