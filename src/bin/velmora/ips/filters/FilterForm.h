#pragma once

#include <velmora/form/Form.h>
#include <velmora/form/FormCheck.h>
#include <velmora/form/GenerationMarks.h>
#include <velmora/generation/Generation.h>
#include <velmora/rules/ArgumentDictionary.h>

#include <QString>
#include <QTextEdit>

#include <string>
#include <vector>

namespace Velmora {

/// The rows, checks and arguments that all FIR filter forms have. The rows are added in the order of the form that
/// composes it; each `add` belongs to one of them and is called once.
class FilterForm {
public:
    FilterForm(QWidget* widget, const QString& className, FormMemory memory) : _form(widget, className, memory) {}

    Form& getForm() { return _form; }
    const Form& getForm() const { return _form; }

    void addEntityName();
    void addInputDataWidth(const NumberRange& range);
    void addOutputDataWidth(const NumberRange& range);
    void addCoefficientWidth(const NumberRange& range);
    void addCoefficients();
    void addTruncation(const NumberRange& range);

    QString getEntityName() const { return _entityEdit->text(); }
    QTextEdit* getCoefficientsEdit() const { return _coefficientsEdit; }

    std::vector<std::string> getCoefficientList() const;
    /// The coefficient width rounded up to whole hexadecimal digits, in bits.
    unsigned long getNormalizedCoefficientWidth() const;
    /// The VHDL aggregate of the list. Throws what `renderCoefficients` throws.
    std::string getCoefficientString() const;

    /// Appends the checks that every filter begins with. A form whose coefficients are signals needs no list of them.
    void check(FormCheck& check, bool needsCoefficients) const;

    /// What the Generate button of the leaf starts, which composes this form.
    template <class Leaf>
    Generation getGeneration(const std::string& title, const Leaf& leaf) const {
        return {title,
                getEntityName(),
                FailureRules::filter,
                [this, &leaf] {
                    const bool isGood = leaf.isFullyConfigured();
                    if (isGood)
                        remarkCoefficients();
                    return isGood;
                },
                [&leaf] { return leaf.getArguments(); },
                [this, &leaf] { return markRefusals(_form, [&leaf] { return leaf.getFilter(); }); }};
    }

    /// Append arguments: the data widths with "-1" and truncation, then the coefficient width.
    void addWidthArguments(ArgumentDictionary& arguments) const;

private:
    /// Tells of those that the design cannot hold as they are, as long as the list is used.
    void remarkCoefficients() const;

    Form _form;
    QLineEdit* _entityEdit = nullptr;
    QSpinBox* _inputDataWidth = nullptr;
    QSpinBox* _outputDataWidth = nullptr;
    QSpinBox* _coefficientWidth = nullptr;
    QTextEdit* _coefficientsEdit = nullptr;
    QSpinBox* _truncation = nullptr;
};

} // namespace Velmora
