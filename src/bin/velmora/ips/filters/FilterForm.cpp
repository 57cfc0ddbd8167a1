#include <velmora/ips/filters/FilterForm.h>

#include <velmora/ips/filters/CoefficientsEditor.h>
#include <velmora/rules/Coefficients.h>
#include <velmora/settings/SettingsKeys.h>

#include <Brindle/core/Console.h>

namespace Velmora {

namespace {

constexpr int widestOperand = 18;           // bits, of one of the two operands of a multiplier
constexpr int widestAccumulator = 50;       // bits
constexpr int coefficientsHelpHeight = 100; // pixels; makes their row the tall one

} // namespace

void FilterForm::addEntityName() {
    _entityEdit = _form.addLine(QObject::tr("Entity name"), SettingsKeys::entity);
}

void FilterForm::addInputDataWidth(const NumberRange& range) {
    _inputDataWidth = _form.addNumber(QObject::tr("Input Data width"), "InputDataWidth", range, rangeHelp(range));
}

void FilterForm::addOutputDataWidth(const NumberRange& range) {
    _outputDataWidth = _form.addNumber(QObject::tr("Output Data width"), "OutputDataWidth", range, rangeHelp(range));
}

void FilterForm::addCoefficientWidth(const NumberRange& range) {
    _coefficientWidth = _form.addNumber(QObject::tr("Coefficient width"), "CoefficientWidth", range, rangeHelp(range));
}

void FilterForm::addCoefficients() {
    _coefficientsEdit =
        _form.addField(QObject::tr("Coefficients"), "Coefficients", std::make_shared<const CoefficientsEditor>(),
                       QString(), QObject::tr("List of coefficients separed by ';', ',' or carry return."));
    _form.getHelp(_coefficientsEdit)->setMinimumHeight(coefficientsHelpHeight);
    _form.stretchLastRow();
}

void FilterForm::addTruncation(const NumberRange& range) {
    _truncation = _form.addNumber(QObject::tr("LSB To Be Truncated"), "ToBeTruncated", range,
                                  QObject::tr("Number of bits to be truncated. ") + rangeHelp(range));
}

std::vector<std::string> FilterForm::getCoefficientList() const {
    return parseCoefficients(_coefficientsEdit->toPlainText().toStdString());
}

unsigned long FilterForm::getNormalizedCoefficientWidth() const {
    return normalizedCoefficientWidth(static_cast<unsigned long>(_coefficientWidth->value()));
}

std::string FilterForm::getCoefficientString() const {
    return markRefused(_form, {_coefficientsEdit},
                       [this] { return renderCoefficients(getCoefficientList(), getNormalizedCoefficientWidth()); });
}

void FilterForm::check(FormCheck& check, bool needsCoefficients) const {
    check.require(!getEntityName().isEmpty(), "Entity name not specified!", {_entityEdit})
        .require(!needsCoefficients || !getCoefficientList().empty(), "Coefficients not defined!", {_coefficientsEdit})
        .require(_inputDataWidth->value() <= widestOperand || _coefficientWidth->value() <= widestOperand,
                 "'Input Data width' or 'Coefficient width' should be 18 bit or less.",
                 {_inputDataWidth, _coefficientWidth})
        .require(_truncation->value() + _outputDataWidth->value() <= widestAccumulator,
                 "'LSB To Be Truncated' + 'Output Data width' should be inferior to 50.",
                 {_truncation, _outputDataWidth});
}

void FilterForm::remarkCoefficients() const {
    if (!_coefficientsEdit->isEnabledTo(_coefficientsEdit->parentWidget()))
        return;
    for (const std::string& remark :
         getRangeRemarks(getCoefficientList(), static_cast<unsigned long>(_coefficientWidth->value())))
        Brindle::console.remark(remark);
}

void FilterForm::addWidthArguments(ArgumentDictionary& arguments) const {
    arguments.add("%%INPUT_DATA_WIDTH%%", _inputDataWidth->value())
        .add("%%INPUT_DATA_WIDTH-1%%", _inputDataWidth->value() - 1)
        .add("%%OUTPUT_DATA_WIDTH%%", _outputDataWidth->value())
        .add("%%OUTPUT_DATA_WIDTH-1%%", _outputDataWidth->value() - 1)
        .add("%%TO_BE_TRUNCATED%%", _truncation->value())
        .add("%%COEF_WIDTH%%", _coefficientWidth->value());
}

} // namespace Velmora
