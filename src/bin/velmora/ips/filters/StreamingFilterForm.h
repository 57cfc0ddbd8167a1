#pragma once

#include <velmora/ips/filters/FilterForm.h>

#include <QComboBox>
#include <QSpinBox>

namespace Velmora {

/// The form of a filter that takes a sample at every clock. Its coefficients are constants that the user lists, or
/// input signals of the generated entity, of which the user gives the number.
class StreamingFilterForm {
public:
    /// `widestInput` is the largest input data width in bits.
    StreamingFilterForm(QWidget* widget, const QString& className, FormMemory memory, int widestInput);

    Form& getForm() { return _filter.getForm(); }
    const Form& getForm() const { return _filter.getForm(); }
    const FilterForm& getFilter() const { return _filter; }
    QComboBox* getModeCombo() const { return _modeCombo; }

    /// Enables what the mode needs and says so in the help labels. Throws Brindle::Fatal "Should not be here" for
    /// a mode that does not exist.
    void applyMode(const QString& mode);

    /// True when the coefficients are input signals.
    bool areCoefficientsInputs() const;
    /// Number of taps: the field's in "Input" mode, that of the listed coefficients otherwise.
    int getCoefficientCount() const;
    /// The editor that gives this number.
    QWidget* getCountEditor() const;

    void check(FormCheck& check) const;
    /// Tells the first thing that is wrong with the form; true when nothing is.
    bool isFullyConfigured() const;

    /// The arguments of a generation. Throws what `getCoefficientString` throws and, for a list that the check refuses,
    /// Brindle::Fatal.
    ArgumentDictionary getArguments() const;

private:
    bool isCountInRange() const;

    FilterForm _filter;
    QComboBox* _modeCombo = nullptr;
    QSpinBox* _countSpin = nullptr;
};

} // namespace Velmora
