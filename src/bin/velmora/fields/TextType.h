#pragma once

#include <velmora/fields/FieldType.h>

namespace Velmora {

/// A line of text of the user's own.
class TextType : public FieldType {
public:
    static constexpr int longestText = 32767; ///< Characters; the most that a line edit takes.

    QString getExpectation() const override;
    QJsonObject getDescription() const override;
    std::optional<QVariant> toValue(const QString& text) const override;
};

} // namespace Velmora
