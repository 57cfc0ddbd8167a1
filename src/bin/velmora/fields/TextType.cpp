#include <velmora/fields/TextType.h>

#include <QObject>

namespace Velmora {

QString TextType::getExpectation() const {
    return QObject::tr("a text of at most %1 characters").arg(longestText);
}

QJsonObject TextType::getDescription() const {
    return {{"kind", "text"}, {"longest", longestText}};
}

std::optional<QVariant> TextType::toValue(const QString& text) const {
    return text.size() <= longestText ? std::optional<QVariant>(text) : std::nullopt;
}

} // namespace Velmora
