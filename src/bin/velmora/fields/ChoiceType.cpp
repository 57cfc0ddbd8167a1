#include <velmora/fields/ChoiceType.h>

#include <QJsonArray>
#include <QObject>

namespace Velmora {

QString ChoiceType::getExpectation() const {
    return QObject::tr("one of %1").arg(_items.join(QStringLiteral(", ")));
}

QJsonObject ChoiceType::getDescription() const {
    return {{"kind", "choice"}, {"items", QJsonArray::fromStringList(_items)}};
}

std::optional<QVariant> ChoiceType::toValue(const QString& text) const {
    const int place = _items.indexOf(text);
    return place >= 0 ? std::optional<QVariant>(place) : std::nullopt;
}

} // namespace Velmora
