#pragma once

#include <velmora/form/Form.h>
#include <velmora/generation/Generation.h>

#include <QString>
#include <QVariant>

#include <functional>
#include <vector>

namespace Velmora {

class LineTableView;

/// An item of a combo box.
struct ScopeChoice {
    QString label;
    QVariant data; ///< What it stands for.
};

/// The rows, the check and the generation that the forms of both scopes have. The rows are added in the order of the
/// form that composes it; each `add` that names a row is called once.
class ScopeForm {
public:
    /// The widget is kept, not owned; the class name is the settings group.
    ScopeForm(QWidget* widget, const QString& className, FormMemory memory);

    Form& getForm() { return _form; }
    const Form& getForm() const { return _form; }
    const QString& getGroup() const { return _form.getGroup(); }

    void addEntityName();
    void addInputCount();
    void addCaptureDepth();
    void addPreTriggerSamples(int most);
    void addTriggerCount(int most);
    void addTriggerTable(LineTableView* table);
    /// A number whose help label tells its range.
    QSpinBox* addNumber(const QString& label, const QString& key, const NumberRange& range);
    /// Resets to the first item.
    QComboBox* addChoice(const QString& label, const QString& key, const std::vector<ScopeChoice>& choices);
    /// The row below all others.
    template <class Leaf>
    void addButtons(Leaf* leaf, void (Leaf::*onReset)(), void (Leaf::*onGenerate)()) {
        _form.addStretch();
        _form.addButtons(leaf, onReset, onGenerate);
    }

    std::string getEntityName() const { return _entityEdit->text().toStdString(); }
    int getInputCount() const { return _inputCount->value(); }
    /// In samples.
    int getCaptureDepth() const { return _depthCombo->currentData().toInt(); }
    /// Width in bits of the address of a sample. Throws Brindle::InternalError "Should not be here" for a depth
    /// that does not exist.
    int getCaptureWidth() const;
    QSpinBox* getPreTriggerSpin() const { return _preTriggerSamples; }
    int getPreTriggerSamples() const { return _preTriggerSamples->value(); }
    QSpinBox* getTriggerCountSpin() const { return _triggerCount; }
    int getTriggerCount() const { return _triggerCount->value(); }

    /// Tells the first thing that is wrong with the form; true when nothing is.
    bool isFullyConfigured() const;
    void load() { _form.load(); }
    void save() const { _form.save(); }
    void reset() { _form.reset(); }
    /// What the Generate button starts.
    Generation getGeneration(const std::function<ArgumentDictionary()>& getArguments,
                             const Generation::TextScript& script) const;

private:
    Form _form;
    QLineEdit* _entityEdit = nullptr;
    QSpinBox* _inputCount = nullptr;
    QComboBox* _depthCombo = nullptr;
    QSpinBox* _preTriggerSamples = nullptr;
    QSpinBox* _triggerCount = nullptr;
};

} // namespace Velmora
