#pragma once

#include <velmora/fields/FieldEditor.h>

#include <QSpinBox>

namespace Velmora {

/// A whole number of a range, written in decimal digits without leading zeros.
class NumberEditor : public FieldEditor {
public:
    NumberEditor(int minimum, int maximum) : _minimum(minimum), _maximum(maximum) {}

    QString getExpectation() const override;
    QJsonObject getDescription() const override;
    std::optional<QVariant> toValue(const QString& text) const override;
    QSpinBox* create(QWidget* parent) const override;
    QVariant getValue(const QWidget* widget) const override;
    void setValue(QWidget* widget, const QVariant& value) const override;

private:
    const int _minimum;
    const int _maximum;
};

} // namespace Velmora
