#pragma once

#include <velmora/fields/FieldEditor.h>
#include <velmora/ips/described/FormDescription.h>

#include <QString>
#include <QVariant>

#include <memory>

namespace Velmora {

/// What a described row or column becomes in a form.
struct DescribedEditor {
    std::shared_ptr<const FieldEditor> editor;
    QVariant reset;
    QString range; ///< What a help label tells unless it has a text of its own; empty for kinds without a range.
};

DescribedEditor makeEditor(const DescribedText& text);
DescribedEditor makeEditor(const DescribedNumber& number);
DescribedEditor makeEditor(const DescribedDecimal& decimal);
DescribedEditor makeEditor(const DescribedChoice& choice);
DescribedEditor makeEditor(const DescribedCoefficients& coefficients);

} // namespace Velmora
