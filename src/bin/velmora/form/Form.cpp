#include <velmora/form/Form.h>

#include <velmora/fields/ChoiceEditor.h>
#include <velmora/fields/DecimalEditor.h>
#include <velmora/fields/NumberEditor.h>
#include <velmora/fields/TextEditor.h>
#include <velmora/tables/LineTableView.h>
#include <velmora/widgets/FoldWidget.h>

#include <QHBoxLayout>
#include <QKeySequence>
#include <QLabel>
#include <QSettings>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace Velmora {

namespace {

// Pixels.
constexpr int buttonSpacing = 24; // nobody is to hit Reset for Generate
constexpr int labelGap = 4;       // between a label and what stands under it
constexpr int numberWidth = 120;  // enough for any number, however wide the form

/// Alt and the first letter, which the text of the button does not underline.
QKeySequence getShortcut(const QString& button) {
    return QKeySequence("Alt+" + button.left(1));
}

} // namespace

QString rangeHelp(const NumberRange& range) {
    return QObject::tr("Range %1 to %2.").arg(range.minimum).arg(range.maximum);
}

Form::Form(QWidget* widget, const QString& className, FormMemory memory, AbsentValue absentValue, const QString& group)
    : _group(group.isEmpty() ? className : group),
      _memory(memory),
      _absentValue(absentValue),
      _mark(new CheckMark(widget)),
      _edits(new EditWatch(widget)),
      _history(new FormHistory(_fields, _tables, widget)),
      _grid(new QGridLayout),
      _buttons(new QHBoxLayout) {
    widget->setObjectName(className);
    _buttons->setSpacing(buttonSpacing);
    _grid->setContentsMargins(5, 5, 5, 5);
    _grid->setColumnStretch(1, 1);
    _grid->setColumnStretch(2, 1);
    widget->setLayout(_grid);
    QObject::connect(_history, &QUndoStack::indexChanged, _mark, &CheckMark::clear);
}

void Form::addSection(const QString& title, const QString& subgroup, const std::function<void()>& addRows) {
    _section = new FoldWidget(title, nullptr);
    _sectionTitle = title;
    _grid->addWidget(_section, _rowCount, 0, 1, -1);
    for (int column = 0; column < 3; ++column) {
        _grid->setColumnStretch(column, 1);
        _section->setColumnStretch(column, 1);
    }
    const int formRowCount = std::exchange(_rowCount, 0);
    _subgroup = subgroup.isEmpty() ? QString() : subgroup + "/";
    addRows();
    _section->finalize();
    _sections.push_back(std::exchange(_section, nullptr));
    _sectionTitle.clear();
    _subgroup.clear();
    _rowCount = formRowCount + 1;
}

QLineEdit* Form::addLine(const QString& label, const QString& key, const QString& help, LineReset lineReset) {
    const bool clears = lineReset == LineReset::Clears;
    return addField(label, key, std::make_shared<const TextEditor>(),
                    clears ? std::optional<QVariant>(QString()) : std::nullopt, help);
}

QSpinBox* Form::addNumber(const QString& label, const QString& key, const NumberRange& range, const QString& help) {
    return addField(label, key, std::make_shared<const NumberEditor>(range.minimum, range.maximum), range.resetValue,
                    help);
}

QDoubleSpinBox* Form::addDecimal(const QString& label, const QString& key, const DecimalRange& range) {
    return addField(label, key,
                    std::make_shared<const DecimalEditor>(range.minimum, range.maximum, range.decimals, range.step),
                    range.resetValue);
}

QComboBox* Form::addChoice(const QString& label, const QString& key, const QStringList& items,
                           std::optional<int> resetIndex) {
    return addField(label, key, std::make_shared<const ChoiceEditor>(items), resetIndex);
}

void Form::addTable(LineTableView* table, const QString& countKey) {
    place(table, _rowCount++, 0, 1, 2);
    _edits->add(table->getModel());
    table->setChange([this](const QString& name, const std::function<void()>& work) { change(name, work); });
    _tables.push_back({table, countKey, _sectionTitle});
}

HelpLabel* Form::addHelp(const QString& help, int rowCount) {
    auto* helpLabel = new HelpLabel(help, nullptr);
    helpLabel->setWordWrap(true);
    place(helpLabel, _rowCount - rowCount, 2, rowCount);
    return helpLabel;
}

void Form::addUnderLabel(QWidget* field, QLayout* layout) {
    auto* grid = qobject_cast<QGridLayout*>(field->parentWidget()->layout());
    int row = 0;
    int column = 0;
    int span = 0;
    grid->getItemPosition(grid->indexOf(field), &row, &column, &span, &span);
    QLayoutItem* label = grid->itemAtPosition(row, 0);
    // The label stands in the middle of the cell: as much room above as below it keeps the layout there too.
    int room = 0;
    for (int index = 0; index < layout->count(); ++index) // the layout passes over what was never shown
        room = std::max(room, layout->itemAt(index)->widget()->sizeHint().height());
    auto* placed = new QVBoxLayout;
    placed->setSpacing(0);
    placed->addSpacing(room + label->widget()->sizeHint().height() + 2 * labelGap);
    placed->addLayout(layout);
    grid->addLayout(placed, row, 0, Qt::AlignVCenter | Qt::AlignLeft);
}

void Form::stretchLastRow() {
    _grid->setRowStretch(_rowCount - 1, 1);
}

void Form::addStretch() {
    _grid->setRowStretch(_rowCount++, 1);
}

void Form::addRow(const QString& label, const QString& key, QWidget* widget, const QString& help) {
    auto* title = new QLabel(QString(label).replace('&', QLatin1String("&&")));
    title->setTextFormat(Qt::PlainText);
    title->setBuddy(widget);
    _labels[widget] = title;
    _labelWidth = std::max(_labelWidth, title->sizeHint().width());
    widget->setObjectName(_subgroup + key);
    widget->setAccessibleName(label);
    _edits->add(widget);
    place(title, _rowCount, 0);
    const bool isNumber = qobject_cast<QAbstractSpinBox*>(widget);
    if (isNumber)
        widget->setMinimumWidth(numberWidth);
    place(widget, _rowCount, 1, 1, 1, isNumber ? Qt::AlignLeft : Qt::Alignment());
    ++_rowCount;
    if (!help.isEmpty())
        _helpLabels[widget] = addHelp(help, 1);
}

void Form::place(QWidget* widget, int row, int column, int rowSpan, int columnSpan, Qt::Alignment alignment) {
    if (_section)
        _section->addWidget(widget, row, column, rowSpan, columnSpan, alignment);
    else
        _grid->addWidget(widget, row, column, rowSpan, columnSpan, alignment);
}

void Form::alignSections() {
    if (_sections.empty())
        return;
    _grid->setColumnMinimumWidth(0, _labelWidth);
    for (FoldWidget* section : _sections)
        section->setColumnMinimumWidth(0, _labelWidth);
}

QPushButton* Form::addButton(const QString& text, const QString& tip) {
    auto* button = new QPushButton(text);
    button->setObjectName(text);
    button->setShortcut(getShortcut(text));
    button->setToolTip(QStringLiteral("%1 (%2)").arg(tip, button->shortcut().toString(QKeySequence::NativeText)));
    _buttons->addWidget(button);
    // The shortcut leaves the focus elsewhere; a cell that is being edited counts once it has lost it.
    QObject::connect(button, &QPushButton::pressed, button, [button] { button->setFocus(); });
    return button;
}

void Form::setEnabled(QWidget* widget, bool enabled) {
    for (QWidget* part : std::initializer_list<QWidget*>{widget, _labels.value(widget), _helpLabels.value(widget)}) {
        if (part)
            part->setEnabled(enabled);
    }
}

void Form::load() {
    if (_memory == FormMemory::None)
        return;
    _mark->clear();
    QSettings settings;
    settings.beginGroup(_group);
    for (const FormField& field : _fields) {
        const QVariant value = settings.value(field.key);
        if (value.isValid() || _absentValue == AbsentValue::ReadsAsEmpty)
            field.setValue(value);
    }
    for (const FormTable& table : _tables)
        table.view->load();
    for (const FormField& field : _fields)
        field.editor->forgetEdits(field.widget);
    _history->clear();
}

void Form::save() const noexcept {
    if (_memory == FormMemory::None)
        return;
    QSettings settings;
    settings.beginGroup(_group);
    for (const FormField& field : _fields)
        settings.setValue(field.key, field.getValue());
    settings.sync();
    for (const FormTable& table : _tables)
        table.view->save();
}

void Form::change(const QString& name, const std::function<void()>& work) {
    _mark->clear();
    _history->change(name, work);
}

void Form::reset() {
    change(QObject::tr("Reset"), [this] {
        for (const FormField& field : _fields) {
            if (field.resetValue)
                field.setValue(*field.resetValue);
        }
        for (const FormTable& table : _tables)
            table.view->initialize();
    });
}

} // namespace Velmora
