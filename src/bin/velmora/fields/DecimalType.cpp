#include <velmora/fields/DecimalType.h>

#include <Brindle/core/Label.h>

#include <QObject>
#include <QRegularExpression>

#include <cmath>

namespace Velmora {

QString DecimalType::getExpectation() const {
    return QObject::tr("a multiple of %3 from %1 to %2")
        .arg(toText(_minimum), toText(_maximum), toText(std::pow(10, -_decimals)));
}

QJsonObject DecimalType::getDescription() const {
    return {{"kind", "decimal"}, {"minimum", _minimum}, {"maximum", _maximum}, {"decimals", _decimals}};
}

QString DecimalType::toText(const QVariant& value) const {
    return QString::fromStdString(Brindle::getLabel(value.toDouble()));
}

std::optional<QVariant> DecimalType::toValue(const QString& text) const {
    const QRegularExpression form(QStringLiteral("\\A-?[0-9]+(\\.[0-9]{1,%1})?\\z").arg(_decimals));
    const double number = text.toDouble();
    const bool holds = form.match(text).hasMatch() && number >= _minimum && number <= _maximum;
    return holds ? std::optional<QVariant>(number) : std::nullopt;
}

} // namespace Velmora
