#pragma once

#include <velmora/catalogue/GeneratorLeaf.h>
#include <velmora/ips/filters/StreamingFilterForm.h>

#include <Brindle/core/Exception.h>

#include <QWidget>

namespace Velmora {

class IPLeaf;

/// The form of the transposed FIR filter for two channels in turn.
class TransposeDualLeaf : public QWidget, public GeneratorLeaf {
    Q_OBJECT

public:
    /// The IP leaf, kept and not owned, gives the script.
    explicit TransposeDualLeaf(IPLeaf* ipLeaf);
    ~TransposeDualLeaf() override;

    Form& getForm() final { return _form.getForm(); }
    std::vector<std::string> getCoefficientList() const { return _form.getFilter().getCoefficientList(); }
    unsigned long getNormalizedCoefficientWidth() const { return _form.getFilter().getNormalizedCoefficientWidth(); }
    std::string getCoefficientString() const {
        return Brindle::locatedAt(BRINDLE_HERE, [this] { return _form.getFilter().getCoefficientString(); });
    }
    /// Tells the first thing that is wrong with the form; true when nothing is.
    bool isFullyConfigured() const { return _form.isFullyConfigured(); }
    /// What the script is given. Throws what the rendering of coefficients throws.
    ArgumentDictionary getArguments() const {
        return Brindle::locatedAt(BRINDLE_HERE, [this] { return _form.getArguments(); });
    }
    /// Runs the script on the form's values. Throws what the runner and `getArguments` throw.
    QString getFilter() const;
    Generation getGeneration() const override;
    void load() { getForm().load(); }
    void save() { getForm().save(); }

public Q_SLOTS:
    void onGenerate();
    void onReset() { getForm().reset(); }
    void onCoefficientModeChange(const QString& text) {
        Brindle::locatedAt(BRINDLE_HERE, [&] { _form.applyMode(text); });
    }

private:
    IPLeaf* const _ipLeaf;
    StreamingFilterForm _form;
};

} // namespace Velmora
