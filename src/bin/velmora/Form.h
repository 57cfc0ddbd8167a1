#pragma once

#include <velmora/FormField.h>
#include <velmora/HelpLabel.h>

#include <QComboBox>
#include <QGridLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QString>
#include <QStringList>
#include <QTextEdit>
#include <QWidget>

#include <optional>
#include <vector>

namespace Velmora {

/// Range and reset value of a number that a form asks for.
struct NumberRange {
    int minimum;
    int maximum;
    int resetValue;
};

/// The body of a generator form: rows of label, editor and help label in a grid, the buttons that end it, and the
/// settings group in which the editors' values outlive the program. A form composes one; the editors belong to the
/// form's widget.
class Form {
public:
    /// Installs the grid on the widget, which is kept, not owned, and takes the class name as object name. The class
    /// name is also the settings group.
    Form(QWidget* widget, const QString& className);

    /// Each adds a row. The key is the editor's object name and its key in the settings; the help text may be empty.
    QLineEdit* addLine(const QString& label, const QString& key, const QString& help = {});
    QSpinBox* addNumber(const QString& label, const QString& key, const NumberRange& range, const QString& help);
    /// A choice without a reset index is left alone by `reset`.
    QComboBox* addChoice(const QString& label, const QString& key, const QStringList& items,
                         std::optional<int> resetIndex);
    /// A text of several lines, which takes the free height of the form.
    QTextEdit* addText(const QString& label, const QString& key, const QString& help);
    /// A row that takes the free height of the form.
    void addStretch();
    /// The last row: the buttons "Reset" and "Generate", which act on being pressed, across all columns.
    template <class Leaf>
    void addButtons(Leaf* leaf, void (Leaf::*onReset)(), void (Leaf::*onGenerate)()) {
        QObject::connect(addButton(QStringLiteral("Reset")), &QPushButton::pressed, leaf, onReset);
        QObject::connect(addButton(QStringLiteral("Generate")), &QPushButton::pressed, leaf, onGenerate);
        _grid->addLayout(_buttons, _rowCount++, 0, 1, -1);
    }

    /// The help label beside an editor; null when it has none.
    HelpLabel* getHelp(QWidget* editor) const;
    const QString& getGroup() const { return _group; }

    /// Gives every editor its stored value. What is absent reads as empty or 0; a number outside the range becomes its
    /// nearest end, an index that the choice does not have and a value of another type are ignored.
    void load();
    /// Stores every editor's value. Never throws; a program that is ending by an exception leaves the settings as they
    /// were.
    void save() const noexcept;
    void reset();

private:
    void addRow(const QString& label, const QString& key, QWidget* editor, const QString& help);
    QPushButton* addButton(const QString& text);

    QString _group;
    QGridLayout* _grid;
    class QHBoxLayout* _buttons;
    int _rowCount = 0;
    std::vector<FormField> _fields;
};

} // namespace Velmora
