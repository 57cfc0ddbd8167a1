#include <velmora/ips/filters/StreamingFilterForm.h>

#include <velmora/generation/Clock.h>

#include <Brindle/core/Exception.h>
#include <Brindle/core/Label.h>
#include <Quillon/Application.h>

namespace Velmora {

namespace {

constexpr NumberRange countRange{3, 56, 3};

const QString constantMode = QStringLiteral("Constant");
const QString inputMode = QStringLiteral("Input");

} // namespace

StreamingFilterForm::StreamingFilterForm(QWidget* widget, const QString& className, FormMemory memory, int widestInput)
    : _filter(widget, className, memory) {
    _filter.addEntityName();
    _filter.addInputDataWidth({8, widestInput, 8});
    _filter.addOutputDataWidth({8, 50, 8});
    _filter.addCoefficientWidth({8, 24, 8});
    _modeCombo = getForm().addChoice(QObject::tr("Coefficient mode"), "CoefficientMode", {constantMode, inputMode}, 0);
    _countSpin =
        getForm().addNumber(QObject::tr("Coefficient count"), "CoefficientCount", countRange, rangeHelp(countRange));
    _countSpin->setEnabled(false);
    _filter.addCoefficients();
    _filter.addTruncation({0, 36, 0});
}

void StreamingFilterForm::applyMode(const QString& mode) {
    const bool isInput = mode == inputMode;
    if (!isInput && mode != constantMode)
        throw Brindle::withFields(Brindle::Fatal("Should not be here"), {{"mode", mode.toStdString()}});
    QTextEdit* coefficientsEdit = _filter.getCoefficientsEdit();
    _countSpin->setEnabled(isInput);
    coefficientsEdit->setEnabled(!isInput);
    getForm()
        .getHelp(coefficientsEdit)
        ->setText(isInput ? QObject::tr("Not available when coefficients are inputs.")
                          : QObject::tr("List of coefficients separed by ';', ',' or carry return.\n\n"
                                        "E.g.: 45, 42, 34, 78\n\n"
                                        "E.g.: x\"F1F\", x\"AE7\", x\"B8C\""));
    getForm()
        .getHelp(_countSpin)
        ->setText(isInput ? rangeHelp(countRange) : QObject::tr("Deduced from the amount of coefficients specified."));
}

bool StreamingFilterForm::areCoefficientsInputs() const {
    return _modeCombo->currentText() == inputMode;
}

int StreamingFilterForm::getCoefficientCount() const {
    return areCoefficientsInputs() ? _countSpin->value() : static_cast<int>(_filter.getCoefficientList().size());
}

QWidget* StreamingFilterForm::getCountEditor() const {
    if (areCoefficientsInputs())
        return _countSpin;
    return _filter.getCoefficientsEdit();
}

bool StreamingFilterForm::isCountInRange() const {
    const int count = getCoefficientCount();
    return count >= countRange.minimum && count <= countRange.maximum;
}

void StreamingFilterForm::check(FormCheck& check) const {
    _filter.check(check, !areCoefficientsInputs());
    check.require(isCountInRange(), "Coefficient count should be between 3 and 56.", {getCountEditor()});
}

bool StreamingFilterForm::isFullyConfigured() const {
    FormCheck formCheck(getForm());
    check(formCheck);
    return formCheck.hasPassed();
}

ArgumentDictionary StreamingFilterForm::getArguments() const {
    const bool isInput = areCoefficientsInputs();
    if (!isInput && !isCountInRange())
        throw Brindle::Fatal("Number of coefficients must be in range 3 to 56");
    ArgumentDictionary arguments;
    arguments.add("%%N_TAPS%%", getCoefficientCount()).add("%%ENTITY_NAME%%", _filter.getEntityName().toStdString());
    const std::string_view coefficientsKey = "%%COEFS_PKG_HEXA_CONSTANT%%";
    if (isInput)
        arguments.addLiteral(coefficientsKey, "(others => (others => '0'))");
    else
        arguments.add(coefficientsKey, _filter.getCoefficientString());
    arguments.add("%%APPLICATION%%", Quillon::application->getFullName().toStdString())
        .add("%%COEF_ARE_INPUT_SIGNALS%%", Brindle::getLabel(isInput));
    _filter.addWidthArguments(arguments);
    arguments.add("%%DATE%%", getGenerationDateLabel());
    return arguments;
}

} // namespace Velmora
