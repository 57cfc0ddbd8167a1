#include <velmora/workbench/PreviewPage.h>

#include <velmora/catalogue/IPLeaf.h>
#include <velmora/workbench/HdlView.h>
#include <velmora/workbench/MessageLabel.h>
#include <velmora/workbench/PageMargin.h>
#include <velmora/workbench/PreviewFeed.h>
#include <velmora/workbench/PreviewSheet.h>

#include <Brindle/widgets/FileDialog.h>
#include <Brindle/widgets/Theme.h>

#include <QClipboard>
#include <QComboBox>
#include <QDir>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QPushButton>
#include <QSplitter>
#include <QVBoxLayout>

#include <algorithm>

namespace Velmora {

namespace {

// Pixels.
constexpr int narrowSheet = 324; // holds the symbol of a filter

/// That of the bench among the files, if there is one.
QString getBenchName(const Preview& preview) {
    const QString name = "tb_" + preview.entity + ".vhd";
    const bool isGenerated = std::ranges::any_of(
        preview.files, [&name](const Preview::File& file) { return file.name.section('/', -1) == name; });
    return isGenerated ? name : preview.entity + "_tb.vhd";
}

} // namespace

PreviewPage::PreviewPage(IPLeaf& leaf, PreviewFeed& feed) : _feed(feed), _leaf(leaf) {
    setObjectName(QStringLiteral("previewPage"));
}

void PreviewPage::createWidgets() {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, pageMargin / 2, 0, 0);
    layout->setSpacing(pageMargin / 2);
    _bar = new QHBoxLayout;
    _bar->setContentsMargins(pageMargin, 0, pageMargin, 0);
    _bar->setSpacing(pageMargin);
    layout->addLayout(_bar);
    _instantiationButton = addButton(tr("Copy instantiation"), "copyInstantiation", &PreviewPage::copyInstantiation);
    _hdlButton = addButton(tr("Copy HDL"), "copyHdl", &PreviewPage::copyHdl);
    _benchButton = addButton(tr("Save test bench..."), "saveBench", &PreviewPage::saveBench);
    _message = new MessageLabel("previewMessage");
    _message->setMinimumWidth(1);
    _bar->addWidget(_message, 1);
    _fileCombo = new QComboBox;
    _fileCombo->setObjectName(QStringLiteral("fileCombo"));
    _fileCombo->setAccessibleName(tr("Generated file"));
    Brindle::theme.enrich(_fileCombo);
    connect(_fileCombo, QOverload<int>::of(&QComboBox::activated), this, &PreviewPage::showFile);
    _bar->addWidget(_fileCombo);

    auto* splitter = new QSplitter(Qt::Horizontal);
    splitter->setChildrenCollapsible(false);
    _sheet = new PreviewSheet(nullptr);
    splitter->addWidget(_sheet);
    _hdl = new HdlView(nullptr);
    _hdl->setMinimumSize(120, 40);
    splitter->addWidget(_hdl);
    _hdl->raise(); // last for Tab, too
    splitter->setStretchFactor(1, 1);
    const int sheetWidth = std::min(_sheet->sizeHint().width(), std::max(narrowSheet, width() / 2));
    splitter->setSizes({sheetWidth, width() - sheetWidth});
    layout->addWidget(splitter, 1);
}

QPushButton* PreviewPage::addButton(const QString& text, const char* name, void (PreviewPage::*onClicked)()) {
    auto* button = new QPushButton(text);
    button->setObjectName(QLatin1String(name));
    connect(button, &QPushButton::clicked, this, onClicked);
    _bar->addWidget(button);
    return button;
}

void PreviewPage::setPreview(const Preview& preview) {
    _preview = preview;
    _isOutdated = true;
    if (isVisible())
        showPreview();
}

void PreviewPage::showEvent(QShowEvent* event) {
    if (!_hdl)
        createWidgets();
    QWidget::showEvent(event);
    if (_isOutdated)
        showPreview();
}

void PreviewPage::showPreview() {
    _isOutdated = false;
    _sheet->setPreview(_preview);
    _instantiationButton->setEnabled(!_preview.instantiation.isEmpty());
    _hdlButton->setEnabled(!_preview.files.empty());
    _benchButton->setEnabled(!_preview.files.empty());
    tell(QString());

    const QString shown = _fileCombo->currentText();
    _fileCombo->clear();
    for (const Preview::File& file : _preview.files)
        _fileCombo->addItem(file.name);
    _fileCombo->setCurrentIndex(std::max(0, _fileCombo->findText(shown)));
    _fileCombo->setVisible(_fileCombo->count() > 1);
    showFile();
}

const Preview::File* PreviewPage::getShownFile() const {
    const auto index = static_cast<std::size_t>(std::max(0, _fileCombo->currentIndex()));
    return index < _preview.files.size() ? &_preview.files[index] : nullptr;
}

void PreviewPage::showFile() {
    const Preview::File* file = getShownFile();
    _hdl->setFile(file ? file->name : QString(), file ? file->text : QString());
}

void PreviewPage::copyInstantiation() {
    QGuiApplication::clipboard()->setText(_preview.instantiation);
    tell(tr("The instantiation is on the clipboard."));
}

void PreviewPage::copyHdl() {
    if (const Preview::File* file = getShownFile()) {
        QGuiApplication::clipboard()->setText(file->text);
        tell(tr("%1 is on the clipboard.").arg(file->name));
    }
}

void PreviewPage::saveBench() {
    const QString proposed = QDir::currentPath() + "/" + getBenchName(_preview);
    const QString filename =
        Brindle::FileDialog::getSaveFileName(this, tr("Save the test bench"), proposed, QStringLiteral("VHDL (*.vhd)"));
    if (filename.isEmpty())
        return;
    tell(tr("Writing the test bench..."));
    _feed.writeBench(filename, [this, filename](const QString& problem) {
        tell(problem.isEmpty() ? tr("%1 is written.").arg(filename) : problem, !problem.isEmpty());
    });
}

void PreviewPage::tell(const QString& text, bool isProblem) {
    _message->tell(text, isProblem ? "error" : "muted");
    _message->setToolTip(text);
}

} // namespace Velmora
