#include <velmora/ips/described/DescribedEditor.h>

#include <velmora/fields/ChoiceEditor.h>
#include <velmora/fields/DecimalEditor.h>
#include <velmora/fields/NumberEditor.h>
#include <velmora/fields/TextEditor.h>
#include <velmora/form/Form.h>
#include <velmora/ips/filters/CoefficientsEditor.h>

#include <Brindle/core/Label.h>

#include <QStringList>

namespace Velmora {

DescribedEditor makeEditor(const DescribedText& text) {
    return {std::make_shared<const TextEditor>(), QString::fromStdString(text.reset), QString()};
}

DescribedEditor makeEditor(const DescribedNumber& number) {
    return {std::make_shared<const NumberEditor>(number.minimum, number.maximum), number.reset,
            rangeHelp({number.minimum, number.maximum, number.reset})};
}

DescribedEditor makeEditor(const DescribedDecimal& decimal) {
    return {std::make_shared<const DecimalEditor>(decimal.minimum, decimal.maximum, decimal.decimals, decimal.step),
            decimal.reset,
            QObject::tr("Range %1 to %2.")
                .arg(QString::fromStdString(Brindle::getLabel(decimal.minimum)),
                     QString::fromStdString(Brindle::getLabel(decimal.maximum)))};
}

DescribedEditor makeEditor(const DescribedChoice& choice) {
    QStringList texts;
    for (const DescribedChoice::Item& item : choice.items)
        texts += QString::fromStdString(item.text);
    return {std::make_shared<const ChoiceEditor>(texts), choice.reset, QString()};
}

DescribedEditor makeEditor(const DescribedCoefficients& coefficients) {
    return {std::make_shared<const CoefficientsEditor>(), QString::fromStdString(coefficients.reset), QString()};
}

} // namespace Velmora
