#pragma once

#include <velmora/form/CheckMark.h>
#include <velmora/form/EditWatch.h>
#include <velmora/form/FormField.h>
#include <velmora/form/FormHistory.h>
#include <velmora/form/FormMemory.h>
#include <velmora/form/FormTable.h>
#include <velmora/widgets/HelpLabel.h>

#include <QComboBox>
#include <QDoubleSpinBox>
#include <QGridLayout>
#include <QHash>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QString>
#include <QStringList>
#include <QWidget>

#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

QT_BEGIN_NAMESPACE
class QHBoxLayout;
class QLayout;
QT_END_NAMESPACE

namespace Velmora {

class FoldWidget;

/// Range and reset value of a number that a form asks for.
struct NumberRange {
    int minimum;
    int maximum;
    int resetValue;
};

/// What the help label of a number says.
QString rangeHelp(const NumberRange& range);

/// The same for a number with decimals.
struct DecimalRange {
    double minimum;
    double maximum;
    double resetValue;
    double step;  ///< Of the arrows of the spin box.
    int decimals; ///< Digits after the point.
};

/// What `Form::load` makes of a value that is not stored.
enum class AbsentValue { ReadsAsEmpty, KeepsCurrent };

/// What `Form::reset` does with a line.
enum class LineReset { Clears, KeepsText };

/// The body of a generator form: rows of label, editor and help label in a grid, some of them in sections that fold,
/// the buttons that end it, and the settings group in which the fields' values outlive the program. A form composes
/// one; what it makes belongs to the form's widget.
class Form {
public:
    /// Installs the grid on the widget, which is kept, not owned, and takes the class name as object name. The class
    /// name is also the settings group unless there is another.
    Form(QWidget* widget, const QString& className, FormMemory memory,
         AbsentValue absentValue = AbsentValue::ReadsAsEmpty, const QString& group = {});
    Form(const Form&) = delete;
    Form& operator=(const Form&) = delete;
    ~Form() = default;

    /// A section that folds: the function adds its rows, whose keys lie in the subgroup (none when it is empty). The
    /// columns of a form with sections are equally wide.
    void addSection(const QString& title, const QString& subgroup, const std::function<void()>& addRows);

    /// Adds a row. The key is the widget's object name and its key in the settings, below the subgroup of the section;
    /// a field without a reset value is left alone by `reset`; the help text may be empty. Returns what
    /// `Editor::create` does.
    template <class Editor>
    auto* addField(const QString& label, const QString& key, std::shared_ptr<const Editor> editor,
                   std::optional<QVariant> resetValue, const QString& help = {}) {
        auto* widget = editor->create(nullptr);
        addRow(label, key, widget, help);
        _fields.push_back(
            {widget->objectName(), label, _sectionTitle, widget, std::move(editor), std::move(resetValue)});
        return widget;
    }
    /// The same for the usual kinds.
    QLineEdit* addLine(const QString& label, const QString& key, const QString& help = {},
                       LineReset lineReset = LineReset::Clears);
    QSpinBox* addNumber(const QString& label, const QString& key, const NumberRange& range, const QString& help = {});
    QDoubleSpinBox* addDecimal(const QString& label, const QString& key, const DecimalRange& range);
    QComboBox* addChoice(const QString& label, const QString& key, const QStringList& items,
                         std::optional<int> resetIndex);
    /// A row without label that takes the columns of label and editor. The table shows as many lines as the number of
    /// that key counts, and is loaded, saved and reset with the form.
    void addTable(LineTableView* table, const QString& countKey);
    /// Puts widgets that belong to the label of a field under it, into the cell of the grid that the label stands in.
    static void addUnderLabel(QWidget* field, QLayout* layout);
    /// One help label for the last rows together.
    HelpLabel* addHelp(const QString& help, int rowCount);
    /// The last row takes the free height of the form.
    void stretchLastRow();
    /// A row of nothing that does.
    void addStretch();
    /// The last row: the buttons "Reset" and "Generate", which act on being pressed, across all columns.
    template <class Leaf>
    void addButtons(Leaf* leaf, void (Leaf::*onReset)(), void (Leaf::*onGenerate)()) {
        QPushButton* resetButton = addButton("Reset", QObject::tr("Puts every field back to its reset value"));
        QPushButton* generateButton = addButton("Generate", QObject::tr("Checks the form and writes the HDL"));
        resetButton->setFlat(true);       // as it is to look beside
        generateButton->setDefault(true); // what the form is for
        QObject::connect(resetButton, &QPushButton::pressed, leaf, onReset);
        QObject::connect(generateButton, &QPushButton::pressed, leaf, onGenerate);
        _grid->addLayout(_buttons, _rowCount++, 0, 1, -1);
        alignSections();
    }

    /// The help label beside the widget of a field; null when it has none.
    HelpLabel* getHelp(QWidget* widget) const { return _helpLabels.value(widget); }
    /// Whether the user can fill in a field or table; its labels are greyed out with it.
    void setEnabled(QWidget* widget, bool enabled);
    const QString& getGroup() const { return _group; }
    /// In the order of the rows.
    const std::vector<FormField>& getFields() const { return _fields; }
    const std::vector<FormTable>& getTables() const { return _tables; }
    /// On what was refused last. Whatever replaces values takes it off.
    CheckMark& getMark() const { return *_mark; }
    /// Tells when any value changes.
    const EditWatch& getEdits() const { return *_edits; }
    /// Of what can be taken back since the form was loaded.
    FormHistory& getHistory() const { return *_history; }
    /// Runs work that replaces values, such as a reset, as a step that can be taken back; its name is what follows
    /// "Undo".
    void change(const QString& name, const std::function<void()>& work);

    /// Gives every field and table its stored values. What is absent reads as empty or 0, or changes nothing; a number
    /// outside the range becomes its nearest end, an index that the choice does not have and a value of another type
    /// are ignored. The history begins anew.
    void load();
    /// Stores the values of every field and table, also while an exception ends the program. Never throws.
    void save() const noexcept;
    /// Gives the fields their reset values and every table its initial texts.
    void reset();

private:
    void addRow(const QString& label, const QString& key, QWidget* widget, const QString& help);
    /// Puts a widget into the grid of the section that is being filled, or else into the form's own.
    void place(QWidget* widget, int row, int column, int rowSpan = 1, int columnSpan = 1, Qt::Alignment alignment = {});
    /// Gives the labels of all sections one width.
    void alignSections();
    QPushButton* addButton(const QString& text, const QString& tip);

    QString _group;
    FormMemory _memory;
    AbsentValue _absentValue;
    CheckMark* _mark;      // the widget's child
    EditWatch* _edits;     // the same
    FormHistory* _history; // the same
    QGridLayout* _grid;
    QHBoxLayout* _buttons;
    FoldWidget* _section = nullptr; // while it is being filled
    QString _sectionTitle;          // of it; empty outside
    std::vector<FoldWidget*> _sections;
    int _labelWidth = 0; // pixels, of the widest label
    QString _subgroup;   // of the section, with its "/"
    int _rowCount = 0;   // of the grid that is being filled
    std::vector<FormField> _fields;
    std::vector<FormTable> _tables;
    QHash<QWidget*, QLabel*> _labels;        // by the widgets of the fields
    QHash<QWidget*, HelpLabel*> _helpLabels; // the same
};

} // namespace Velmora
