#pragma once

#include <velmora/catalogue/GeneratorLeaf.h>
#include <velmora/ips/filters/FilterForm.h>

#include <Brindle/core/Exception.h>

#include <QWidget>

namespace Velmora {

class IPLeaf;

/// The form of the multiply-accumulate FIR filter, which computes its taps with a given number of DSP blocks in turn.
class MacFirLeaf : public QWidget, public GeneratorLeaf {
    Q_OBJECT

public:
    /// The IP leaf, kept and not owned, gives the script.
    explicit MacFirLeaf(IPLeaf* ipLeaf);
    ~MacFirLeaf() override;

    Form& getForm() final { return _filter.getForm(); }
    std::vector<std::string> getCoefficientList() const { return _filter.getCoefficientList(); }
    unsigned long getNormalizedCoefficientWidth() const { return _filter.getNormalizedCoefficientWidth(); }
    std::string getCoefficientString() const {
        return Brindle::locatedAt(BRINDLE_HERE, [this] { return _filter.getCoefficientString(); });
    }
    /// Tells the first thing that is wrong with the form; true when nothing is.
    bool isFullyConfigured() const;
    /// What the script is given. Throws what the rendering of coefficients throws.
    ArgumentDictionary getArguments() const {
        return Brindle::locatedAt(BRINDLE_HERE, [this] { return makeArguments(); });
    }
    /// Runs the script on the form's values. Throws what the runner and `getArguments` throw.
    QString getFilter() const;
    Generation getGeneration() const override;
    void load() { getForm().load(); }
    void save() { getForm().save(); }

public Q_SLOTS:
    void onGenerate();
    void onReset() { getForm().reset(); }

private:
    ArgumentDictionary makeArguments() const;
    IPLeaf* const _ipLeaf;
    FilterForm _filter;
    QSpinBox* _tapCount = nullptr;
    QSpinBox* _dspCount = nullptr;
    QComboBox* _saturationCombo = nullptr;
    QLineEdit* _patternEdit = nullptr;
};

} // namespace Velmora
