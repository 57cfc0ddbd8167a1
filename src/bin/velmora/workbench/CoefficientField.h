#pragma once

#include <velmora/signal/DesignWish.h>

#include <QString>

#include <string>
#include <vector>

QT_BEGIN_NAMESPACE
class QWidget;
QT_END_NAMESPACE

namespace Velmora {

class Form;
class IPLeaf;
struct FormField;

/// The list of coefficients in the form of a filter.
class CoefficientField {
public:
    /// The page, which is kept, not owned, must have one.
    explicit CoefficientField(const IPLeaf& leaf);
    static bool isIn(const IPLeaf& leaf);

    QWidget* getEditor() const;
    /// False when the coefficients are inputs of the filter.
    bool isUsed() const;
    /// Of a coefficient, in bits.
    unsigned getWidth() const;
    std::vector<std::string> getList() const;
    /// The coefficients as the hardware multiplies by them. Throws what `getUsedCoefficients` throws.
    std::vector<double> getUsed() const;
    /// Replaces the list, as a step of that name that can be taken back.
    void set(const QString& stepName, const std::vector<int>& coefficients) const;

    /// What the form takes.
    int getMostTaps() const;
    DesignWish::Parity getParity() const;

private:
    const IPLeaf& _leaf;
    Form& _form;
    const FormField& _field;
};

} // namespace Velmora
