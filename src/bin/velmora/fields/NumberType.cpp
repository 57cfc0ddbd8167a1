#include <velmora/fields/NumberType.h>

#include <QObject>

namespace Velmora {

QString NumberType::getExpectation() const {
    return QObject::tr("a whole number from %1 to %2").arg(_minimum).arg(_maximum);
}

QJsonObject NumberType::getDescription() const {
    return {{"kind", "number"}, {"minimum", _minimum}, {"maximum", _maximum}};
}

std::optional<QVariant> NumberType::toValue(const QString& text) const {
    const int number = text.toInt();
    const bool holds = QString::number(number) == text && number >= _minimum && number <= _maximum;
    return holds ? std::optional<QVariant>(number) : std::nullopt;
}

} // namespace Velmora
