#include <velmora/Form.h>

#include <Brindle/Theme.h>

#include <QHBoxLayout>
#include <QLabel>
#include <QSettings>

#include <exception>

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
    const int number = value.toInt(&isNumber);
    return isNumber ? std::optional<int>(number) : std::nullopt;
}

QString getToolTip(const QString& button) {
    return button == QLatin1String("Reset") ? QObject::tr("Puts every field back to its reset value")
                                            : QObject::tr("Checks the form and writes the HDL");
}

} // namespace

Form::Form(QWidget* widget, const QString& className)
    : _group(className), _grid(new QGridLayout), _buttons(new QHBoxLayout) {
    widget->setObjectName(className);
    _grid->setContentsMargins(5, 5, 5, 5);
    _grid->setColumnStretch(1, 1);
    _grid->setColumnStretch(2, 1);
    widget->setLayout(_grid);
}

QLineEdit* Form::addLine(const QString& label, const QString& key, const QString& help) {
    auto* editor = new QLineEdit;
    addRow(label, key, editor, help);
    _fields.push_back({key, [editor] { return QVariant(editor->text()); },
                       [editor](const QVariant& value) {
                           if (isText(value))
                               editor->setText(value.toString());
                       },
                       [editor] { editor->clear(); }});
    return editor;
}

QSpinBox* Form::addNumber(const QString& label, const QString& key, const NumberRange& range, const QString& help) {
    auto* editor = new QSpinBox;
    editor->setRange(range.minimum, range.maximum);
    addRow(label, key, editor, help);
    _fields.push_back({key, [editor] { return QVariant(editor->value()); },
                       [editor](const QVariant& value) {
                           if (const auto number = toNumber(value))
                               editor->setValue(*number);
                       },
                       [editor, range] { editor->setValue(range.resetValue); }});
    return editor;
}

QComboBox* Form::addChoice(const QString& label, const QString& key, const QStringList& items,
                           std::optional<int> resetIndex) {
    auto* editor = new QComboBox;
    editor->addItems(items);
    addRow(label, key, editor, QString());
    _fields.push_back({key, [editor] { return QVariant(editor->currentIndex()); },
                       [editor](const QVariant& value) {
                           if (const auto index = toNumber(value); index && *index >= 0 && *index < editor->count())
                               editor->setCurrentIndex(*index);
                       },
                       [editor, resetIndex] {
                           if (resetIndex)
                               editor->setCurrentIndex(*resetIndex);
                       }});
    return editor;
}

QTextEdit* Form::addText(const QString& label, const QString& key, const QString& help) {
    auto* editor = new QTextEdit;
    editor->setAcceptRichText(false);
    editor->setTabChangesFocus(true);
    editor->setStyleSheet("background: " + Brindle::theme.getColorName("background_text") + ";");
    _grid->setRowStretch(_rowCount, 1);
    addRow(label, key, editor, help);
    getHelp(editor)->setMinimumHeight(textHelpHeight);
    _fields.push_back({key, [editor] { return QVariant(editor->toPlainText()); },
                       [editor](const QVariant& value) {
                           if (isText(value))
                               editor->setPlainText(value.toString());
                       },
                       [editor] { editor->clear(); }});
    return editor;
}

void Form::addStretch() {
    _grid->setRowStretch(_rowCount++, 1);
}

void Form::addRow(const QString& label, const QString& key, QWidget* editor, const QString& help) {
    auto* title = new QLabel(label);
    title->setBuddy(editor);
    editor->setObjectName(key);
    editor->setAccessibleName(label);
    Brindle::theme.enrich(editor);
    _grid->addWidget(title, _rowCount, 0);
    _grid->addWidget(editor, _rowCount, 1);
    if (!help.isEmpty()) {
        auto* helpLabel = new HelpLabel(help, nullptr);
        helpLabel->setWordWrap(true);
        _grid->addWidget(helpLabel, _rowCount, 2);
    }
    ++_rowCount;
}

QPushButton* Form::addButton(const QString& text) {
    auto* button = new QPushButton(text);
    button->setObjectName(text);
    button->setToolTip(getToolTip(text));
    _buttons->addWidget(button);
    return button;
}

HelpLabel* Form::getHelp(QWidget* editor) const {
    int row = 0;
    int column = 0;
    int rowSpan = 0;
    int columnSpan = 0;
    _grid->getItemPosition(_grid->indexOf(editor), &row, &column, &rowSpan, &columnSpan);
    QLayoutItem* item = _grid->itemAtPosition(row, 2);
    return item ? qobject_cast<HelpLabel*>(item->widget()) : nullptr;
}

void Form::load() {
    QSettings settings;
    settings.beginGroup(_group);
    for (const FormField& field : _fields)
        field.setValue(settings.value(field.key));
}

void Form::save() const noexcept {
    if (std::uncaught_exceptions() > 0)
        return;
    QSettings settings;
    settings.beginGroup(_group);
    for (const FormField& field : _fields)
        settings.setValue(field.key, field.getValue());
    settings.sync();
}

void Form::reset() {
    for (const FormField& field : _fields)
        field.reset();
}

} // namespace Velmora
