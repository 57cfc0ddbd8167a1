#include <velmora/workbench/CoefficientField.h>

#include <velmora/catalogue/IPLeaf.h>
#include <velmora/form/Form.h>
#include <velmora/rules/Coefficients.h>
#include <velmora/signal/Scaling.h>
#include <velmora/signal/UsedCoefficients.h>

#include <algorithm>

namespace Velmora {

namespace {

constexpr int mostMacTaps = 160;

const FormField* findField(const Form& form, const QString& key) {
    const auto& fields = form.getFields();
    const auto found = std::ranges::find(fields, key, &FormField::key);
    return found == fields.end() ? nullptr : &*found;
}

const FormField* findList(const Form& form) {
    const FormField* field = findField(form, QStringLiteral("Coefficients"));
    const bool isList = field && field->editor->getDescription()["kind"] == QLatin1String("coefficients");
    return isList && findField(form, QStringLiteral("CoefficientWidth")) ? field : nullptr;
}

} // namespace

CoefficientField::CoefficientField(const IPLeaf& leaf)
    : _leaf(leaf), _form(*leaf.getForm()), _field(*findList(_form)) {}

bool CoefficientField::isIn(const IPLeaf& leaf) {
    return leaf.getForm() && findList(*leaf.getForm());
}

QWidget* CoefficientField::getEditor() const {
    return _field.widget;
}

bool CoefficientField::isUsed() const {
    return _field.widget->isEnabledTo(_field.widget->parentWidget());
}

unsigned CoefficientField::getWidth() const {
    const auto width = findField(_form, QStringLiteral("CoefficientWidth"))->getValue().toUInt();
    return std::clamp(width, 1U, widestCoefficient);
}

std::vector<std::string> CoefficientField::getList() const {
    return parseCoefficients(_field.getValue().toString().toStdString());
}

std::vector<double> CoefficientField::getUsed() const {
    return getUsedCoefficients(getList(), getWidth());
}

void CoefficientField::set(const QString& stepName, const std::vector<int>& coefficients) const {
    QStringList texts;
    for (const int coefficient : coefficients)
        texts += QString::number(coefficient);
    _form.change(stepName, [&] { _field.setValue(texts.join(QStringLiteral(", "))); });
    _field.widget->setFocus();
}

int CoefficientField::getMostTaps() const {
    return _leaf.isOVMacFir() ? mostMacTaps : usualMostTaps;
}

DesignWish::Parity CoefficientField::getParity() const {
    return _leaf.isOVTransposeSymmetric() ? DesignWish::Parity::Even : DesignWish::Parity::Any;
}

} // namespace Velmora
