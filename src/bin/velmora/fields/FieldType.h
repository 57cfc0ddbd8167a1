#pragma once

#include <QJsonObject>
#include <QString>
#include <QVariant>

#include <optional>

namespace Velmora {

/// What a field of a form, or a cell of a table in it, can hold: the values as they are kept in the settings and the
/// texts that stand for them in a configuration.
class FieldType {
public:
    FieldType() = default;
    FieldType(const FieldType&) = delete;
    FieldType& operator=(const FieldType&) = delete;
    virtual ~FieldType() = default;

    /// What a user should write: "a whole number from 3 to 56".
    virtual QString getExpectation() const = 0;
    /// The same for a program: its "kind" and what limits it.
    virtual QJsonObject getDescription() const = 0;
    /// The one text that stands for a value.
    virtual QString toText(const QVariant& value) const { return value.toString(); }
    /// The value that a text stands for; nothing when the field cannot hold it.
    virtual std::optional<QVariant> toValue(const QString& text) const = 0;
};

} // namespace Velmora
