#pragma once

#include <velmora/workbench/CoefficientField.h>
#include <velmora/workbench/DesignedList.h>

#include <QObject>

#include <vector>

QT_BEGIN_NAMESPACE
class QHBoxLayout;
class QPushButton;
QT_END_NAMESPACE

namespace Velmora {

/// What fills the list of coefficients of a filter's form: the buttons under its label, and files that are dropped on
/// its editor.
class CoefficientTools : public QObject {
    Q_OBJECT

public:
    /// The page, which owns the object, has a list of coefficients. `program` is the path of velmora-generate.
    CoefficientTools(IPLeaf& leaf, const QString& program);

    const CoefficientField& getField() const { return _field; }
    /// What is known of these coefficients, when they are those that were designed or imported last; else null.
    const DesignedList* findDesigned(const std::vector<double>& used) const;

protected:
    /// The buttons are of use as long as the editor is.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QPushButton* addButton(QHBoxLayout& buttons, const QString& text, const char* name, const QString& tip);
    void chooseFile();
    void import(const QString& filename);
    void design();
    void set(const QString& stepName, const DesignedList& list);

    IPLeaf& _leaf;
    const QString _program;
    const CoefficientField _field;
    DesignedList _designed; // the last one
    std::vector<QPushButton*> _buttons;
};

} // namespace Velmora
