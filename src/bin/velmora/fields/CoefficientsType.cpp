#include <velmora/fields/CoefficientsType.h>

#include <velmora/rules/Coefficients.h>

#include <QObject>
#include <QStringList>

namespace Velmora {

QString CoefficientsType::getExpectation() const {
    return QObject::tr("a list of coefficients separated by \", \"");
}

QJsonObject CoefficientsType::getDescription() const {
    return {{"kind", "coefficients"}};
}

QString CoefficientsType::toText(const QVariant& value) const {
    QStringList coefficients;
    for (const std::string& coefficient : parseCoefficients(value.toString().toStdString()))
        coefficients += QString::fromStdString(coefficient);
    return coefficients.join(QStringLiteral(", "));
}

} // namespace Velmora
