#pragma once

#include <velmora/fields/FieldEditor.h>

#include <QDoubleSpinBox>

namespace Velmora {

/// A number of a range with some digits after the point, such as "0.5".
class DecimalEditor : public FieldEditor {
public:
    /// `decimals` is the most digits after the point, `step` that of the arrows of the spin box.
    DecimalEditor(double minimum, double maximum, int decimals, double step)
        : _minimum(minimum), _maximum(maximum), _decimals(decimals), _step(step) {}

    QString getExpectation() const override;
    QJsonObject getDescription() const override;
    QString toText(const QVariant& value) const override;
    std::optional<QVariant> toValue(const QString& text) const override;
    QDoubleSpinBox* create(QWidget* parent) const override;
    QVariant getValue(const QWidget* widget) const override;
    void setValue(QWidget* widget, const QVariant& value) const override;

private:
    const double _minimum;
    const double _maximum;
    const int _decimals;
    const double _step;
};

} // namespace Velmora
