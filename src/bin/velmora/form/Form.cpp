#include <velmora/form/Form.h>

#include <velmora/fields/ChoiceType.h>
#include <velmora/fields/CoefficientsType.h>
#include <velmora/fields/DecimalType.h>
#include <velmora/fields/NumberType.h>
#include <velmora/fields/TextType.h>
#include <velmora/settings/FormMemory.h>
#include <velmora/tables/LineTableView.h>
#include <velmora/widgets/FoldWidget.h>

#include <Brindle/widgets/Theme.h>

#include <QHBoxLayout>
#include <QKeySequence>
#include <QLabel>
#include <QSettings>

#include <algorithm>
#include <exception>
#include <limits>
#include <utility>

namespace Velmora {

namespace {

constexpr int textHelpHeight = 100; // pixels; makes the row of a text the tall one

/// A settings file may hold anything below a key, lists and raw bytes among it.
bool isText(const QVariant& value) {
    return !value.isValid() || value.type() == QVariant::String;
}

/// The number that a stored value stands for, 0 for an absent one; nothing when it is no number.
std::optional<int> toNumber(const QVariant& value) {
    if (!value.isValid())
        return 0;
    bool isNumber = false;
    const qlonglong number = value.toLongLong(&isNumber);
    using Limits = std::numeric_limits<int>;
    return isNumber ? std::optional(static_cast<int>(std::clamp<qlonglong>(number, Limits::min(), Limits::max())))
                    : std::nullopt;
}

/// The same for a number with decimals.
std::optional<double> toDecimal(const QVariant& value) {
    if (!value.isValid())
        return 0;
    bool isNumber = false;
    const double number = value.toDouble(&isNumber);
    return isNumber ? std::optional<double>(number) : std::nullopt;
}

/// Alt and the first letter, which the text of the button does not underline.
QKeySequence getShortcut(const QString& button) {
    return QKeySequence("Alt+" + button.left(1));
}

} // namespace

QString rangeHelp(const NumberRange& range) {
    return QObject::tr("Range %1 to %2.").arg(range.minimum).arg(range.maximum);
}

Form::Form(QWidget* widget, const QString& className, AbsentValue absentValue)
    : _group(className),
      _absentValue(absentValue),
      _mark(new CheckMark(widget)),
      _grid(new QGridLayout),
      _buttons(new QHBoxLayout) {
    widget->setObjectName(className);
    _grid->setContentsMargins(5, 5, 5, 5);
    _grid->setColumnStretch(1, 1);
    _grid->setColumnStretch(2, 1);
    widget->setLayout(_grid);
}

void Form::addSection(const QString& title, const QString& subgroup, const std::function<void()>& addRows) {
    _section = new FoldWidget(title, nullptr);
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
    _subgroup.clear();
    _rowCount = formRowCount + 1;
}

QLineEdit* Form::addLine(const QString& label, const QString& key, const QString& help, LineReset lineReset) {
    auto* editor = new QLineEdit;
    addRow(label, key, editor, help);
    const bool clears = lineReset == LineReset::Clears;
    _fields.push_back({editor->objectName(), label, std::make_shared<TextType>(),
                       clears ? std::optional<QVariant>(QString()) : std::nullopt,
                       [editor] { return QVariant(editor->text()); },
                       [editor](const QVariant& value) {
                           if (!isText(value))
                               return;
                           if (const QString text = value.toString(); text.isEmpty())
                               editor->clear(); // which can be undone
                           else
                               editor->setText(text);
                       }});
    return editor;
}

QSpinBox* Form::addNumber(const QString& label, const QString& key, const NumberRange& range, const QString& help) {
    auto* editor = new QSpinBox;
    editor->setRange(range.minimum, range.maximum);
    addRow(label, key, editor, help);
    _fields.push_back({editor->objectName(), label, std::make_shared<NumberType>(range.minimum, range.maximum),
                       range.resetValue, [editor] { return QVariant(editor->value()); },
                       [editor](const QVariant& value) {
                           if (const auto number = toNumber(value))
                               editor->setValue(*number);
                       }});
    return editor;
}

QDoubleSpinBox* Form::addDecimal(const QString& label, const QString& key, const DecimalRange& range) {
    auto* editor = new QDoubleSpinBox;
    editor->setDecimals(range.decimals);
    editor->setRange(range.minimum, range.maximum);
    editor->setSingleStep(range.step);
    addRow(label, key, editor, QString());
    _fields.push_back({editor->objectName(), label,
                       std::make_shared<DecimalType>(range.minimum, range.maximum, range.decimals), range.resetValue,
                       [editor] { return QVariant(editor->value()); },
                       [editor](const QVariant& value) {
                           if (const auto number = toDecimal(value))
                               editor->setValue(*number);
                       }});
    return editor;
}

QComboBox* Form::addChoice(const QString& label, const QString& key, const QStringList& items,
                           std::optional<int> resetIndex) {
    auto* editor = new QComboBox;
    editor->addItems(items);
    addRow(label, key, editor, QString());
    _fields.push_back({editor->objectName(), label, std::make_shared<ChoiceType>(items), resetIndex,
                       [editor] { return QVariant(editor->currentIndex()); },
                       [editor](const QVariant& value) {
                           if (const auto index = toNumber(value); index && *index >= 0 && *index < editor->count())
                               editor->setCurrentIndex(*index);
                       }});
    return editor;
}

QTextEdit* Form::addCoefficients(const QString& label, const QString& key, const QString& help) {
    auto* editor = new QTextEdit;
    editor->setAcceptRichText(false);
    editor->setTabChangesFocus(true);
    editor->setStyleSheet("background: " + Brindle::theme.getColorName("background_text") + ";");
    _grid->setRowStretch(_rowCount, 1);
    addRow(label, key, editor, help);
    getHelp(editor)->setMinimumHeight(textHelpHeight);
    _fields.push_back({editor->objectName(), label, std::make_shared<CoefficientsType>(), QString(),
                       [editor] { return QVariant(editor->toPlainText()); },
                       [editor](const QVariant& value) {
                           if (isText(value))
                               editor->setPlainText(value.toString());
                       }});
    return editor;
}

void Form::addTable(LineTableView* table, const QString& countKey) {
    place(table, _rowCount++, 0, 1, 2);
    _tables.push_back({table, countKey});
}

HelpLabel* Form::addHelp(const QString& help, int rowCount) {
    auto* helpLabel = new HelpLabel(help, nullptr);
    helpLabel->setWordWrap(true);
    place(helpLabel, _rowCount - rowCount, 2, rowCount);
    return helpLabel;
}

void Form::addStretch() {
    _grid->setRowStretch(_rowCount++, 1);
}

void Form::addRow(const QString& label, const QString& key, QWidget* editor, const QString& help) {
    auto* title = new QLabel(label);
    title->setBuddy(editor);
    _labelWidth = std::max(_labelWidth, title->sizeHint().width());
    editor->setObjectName(_subgroup + key);
    editor->setAccessibleName(label);
    Brindle::theme.enrich(editor);
    place(title, _rowCount, 0);
    place(editor, _rowCount, 1);
    ++_rowCount;
    if (!help.isEmpty())
        _helpLabels[editor] = addHelp(help, 1);
}

void Form::place(QWidget* widget, int row, int column, int rowSpan, int columnSpan) {
    if (_section)
        _section->addWidget(widget, row, column, rowSpan, columnSpan);
    else
        _grid->addWidget(widget, row, column, rowSpan, columnSpan);
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

void Form::load() {
    if (!FormMemory::isKept())
        return;
    _mark->clear();
    QSettings settings;
    settings.beginGroup(_group);
    for (const FormField& field : _fields) {
        const QVariant value = settings.value(field.key);
        if (value.isValid() || _absentValue == AbsentValue::ReadsAsEmpty)
            field.setValue(value);
    }
}

void Form::save() const noexcept {
    if (!FormMemory::isKept() || std::uncaught_exceptions() > 0)
        return;
    QSettings settings;
    settings.beginGroup(_group);
    for (const FormField& field : _fields)
        settings.setValue(field.key, field.getValue());
    settings.sync();
}

void Form::reset() {
    _mark->clear();
    for (const FormField& field : _fields) {
        if (field.resetValue)
            field.setValue(*field.resetValue);
    }
}

} // namespace Velmora
