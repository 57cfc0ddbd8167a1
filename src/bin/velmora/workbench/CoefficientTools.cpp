#include <velmora/workbench/CoefficientTools.h>

#include <velmora/catalogue/IPLeaf.h>
#include <velmora/form/Form.h>
#include <velmora/signal/NumberFile.h>
#include <velmora/widgets/FileTarget.h>
#include <velmora/workbench/DesignDialog.h>
#include <velmora/workbench/ImportDialog.h>

#include <Brindle/core/Console.h>
#include <Brindle/files/InputFile.h>
#include <Brindle/widgets/FileDialog.h>

#include <QDir>
#include <QEvent>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QPushButton>
#include <QSettings>

#include <algorithm>

namespace Velmora {

namespace {

constexpr std::size_t largestFile = 16UL * 1024 * 1024; // bytes
constexpr int buttonGap = 6;                            // pixels

const QString fileKey = QStringLiteral("CoefficientImport/File"); // that was imported last

std::string readFile(const QString& filename) {
    if (!QFileInfo(filename).isFile()) // opening a named pipe would wait for ever
        throw Brindle::withFields(Brindle::Critical("No file of numbers"), {{"filename", filename.toStdString()}});
    return Brindle::readInputFile(filename.toStdString(), largestFile);
}

} // namespace

CoefficientTools::CoefficientTools(IPLeaf& leaf, const QString& program)
    : QObject(&leaf), _leaf(leaf), _program(program), _field(leaf) {
    QWidget* editor = _field.getEditor();
    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(buttonGap);
    QPushButton* importButton =
        addButton(*buttons, tr("Import..."), "importCoefficients", tr("Takes the coefficients from a file of numbers"));
    connect(importButton, &QPushButton::clicked, this, &CoefficientTools::chooseFile);
    QPushButton* designButton = addButton(*buttons, tr("Design..."), "designCoefficients",
                                          tr("Makes coefficients from what the filter should do"));
    connect(designButton, &QPushButton::clicked, this, &CoefficientTools::design);
    Form::addUnderLabel(editor, buttons);
    editor->installEventFilter(this);
    auto* target = new FileTarget(QStringLiteral(".velmora"), editor);
    connect(target, &FileTarget::dropped, this, &CoefficientTools::import);
}

QPushButton* CoefficientTools::addButton(QHBoxLayout& buttons, const QString& text, const char* name,
                                         const QString& tip) {
    QWidget* editor = _field.getEditor();
    auto* button = new QPushButton(text, editor->parentWidget());
    button->setObjectName(QLatin1String(name));
    button->setToolTip(tip);
    button->setAutoDefault(false);
    button->setEnabled(_field.isUsed());
    QWidget::setTabOrder(_buttons.empty() ? editor : _buttons.back(), button);
    buttons.addWidget(button);
    _buttons.push_back(button);
    return button;
}

bool CoefficientTools::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::EnabledChange) {
        for (QPushButton* button : _buttons)
            button->setEnabled(_field.isUsed());
    }
    return QObject::eventFilter(watched, event);
}

void CoefficientTools::chooseFile() {
    const QString proposed = QSettings().value(fileKey, QDir::currentPath() + "/").toString();
    const QString filename =
        Brindle::FileDialog::getOpenFileName(&_leaf, tr("Import coefficients"), proposed,
                                             tr("Numbers (*.txt *.csv *.coe *.c *.h *.json *.npy);;All files (*)"));
    if (filename.isEmpty())
        return;
    QSettings().setValue(fileKey, filename);
    import(filename);
}

void CoefficientTools::import(const QString& filename) {
    try {
        Brindle::locatedAt(BRINDLE_HERE, [&] {
            const auto numbers = readNumbers(readFile(filename), filename.toStdString(), _field.getWidth());
            ImportDialog dialog(filename, numbers, _field.getWidth(), _field.getMostTaps(), &_leaf);
            if (dialog.exec() == QDialog::Accepted)
                set(tr("Import"), dialog.getImported());
        });
    } catch (const Brindle::Exception& exception) {
        Brindle::console.error(exception);
    }
}

void CoefficientTools::design() {
    DesignDialog dialog(_program, {_field.getWidth(), _field.getMostTaps(), _field.getParity()}, &_leaf);
    if (dialog.exec() == QDialog::Accepted)
        set(tr("Design"), dialog.getDesign());
}

void CoefficientTools::set(const QString& stepName, const DesignedList& list) {
    _designed = list;
    _field.set(stepName, list.coefficients);
}

const DesignedList* CoefficientTools::findDesigned(const std::vector<double>& used) const {
    return std::ranges::equal(_designed.coefficients, used) ? &_designed : nullptr;
}

} // namespace Velmora
