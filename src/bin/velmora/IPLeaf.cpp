#include <velmora/IPLeaf.h>

#include <velmora/APBToSPWLeaf.h>
#include <velmora/DescriptionView.h>
#include <velmora/MacFirLeaf.h>
#include <velmora/RegularFile.h>
#include <velmora/SERDESLeaf.h>
#include <velmora/ScopeLeaf.h>
#include <velmora/SettingsKeys.h>
#include <velmora/StartupScopeLeaf.h>
#include <velmora/SystolicLeaf.h>
#include <velmora/TransposeDualLeaf.h>
#include <velmora/TransposeLeaf.h>
#include <velmora/TransposeSymmetricLeaf.h>

#include <Brindle/Console.h>
#include <Brindle/Exception.h>
#include <Brindle/ListCollection.h>
#include <Brindle/Theme.h>

#include <QDesktopServices>
#include <QScrollArea>
#include <QSettings>
#include <QVBoxLayout>

#include <algorithm>

namespace Velmora {

namespace {

constexpr std::size_t largestDescription = 16UL * 1024 * 1024; // bytes

IPDescription readDescription(const std::string& filename, const Brindle::Location& caller) {
    if (filename.empty())
        throw Brindle::located(Brindle::Critical("Empty filename"), caller);
    const auto content = readRegularFile(filename, largestDescription + 1);
    if (!content)
        throw Brindle::located(Brindle::Critical("Unable to open description file"), caller, {{"filename", filename}});
    if (content->size() > largestDescription) {
        throw Brindle::located(Brindle::Critical("Description file is larger than 16 MiB"), caller,
                               {{"filename", filename}});
    }
    return parseIPDescription(*content, filename, caller);
}

} // namespace

IPLeaf::IPLeaf(const std::string& descriptionFilename)
    : _descriptionFilename(descriptionFilename), _description(readDescription(descriptionFilename, BRINDLE_HERE)) {
    createDescriptionView();
    createConfigurationWidget();
}

void IPLeaf::createDescriptionView() {
    auto* layout = new QVBoxLayout;
    layout->setContentsMargins(0, 0, 0, 0);
    _splitter = new QSplitter(Qt::Vertical);
    layout->addWidget(_splitter);

    auto* view = new DescriptionView(QString::fromStdString(_description.htmlFilename));
    connect(view, &DescriptionView::linkClicked, this, &IPLeaf::onLinkClicked);
    _splitter->addWidget(Brindle::theme.getCapWidget(view));
    setLayout(layout);
}

void IPLeaf::createConfigurationWidget() {
    if (isOVSystolic())
        setConfigurationWidget(new SystolicLeaf(this));
    else if (isOVTranspose())
        setConfigurationWidget(new TransposeLeaf(this));
    else if (isOVTransposeDual())
        setConfigurationWidget(new TransposeDualLeaf(this));
    else if (isOVTransposeSymmetric())
        setConfigurationWidget(new TransposeSymmetricLeaf(this));
    else if (isOVMacFir())
        setConfigurationWidget(new MacFirLeaf(this));
    else if (isOVScope())
        setConfigurationWidget(new ScopeLeaf(this));
    else if (isOVStartupScope())
        setConfigurationWidget(new StartupScopeLeaf(this));
    else if (isOVSERDES())
        setConfigurationWidget(new SERDESLeaf(this));
    else if (isAPBToSPW())
        setConfigurationWidget(new APBToSPWLeaf(this));
}

void IPLeaf::setConfigurationWidget(QWidget* widget) {
    if (!widget)
        throw Brindle::located(Brindle::Critical("Null configurationWidget"), BRINDLE_HERE);
    if (_configurationWidget)
        throw Brindle::located(Brindle::Critical("configurationWidget already set"), BRINDLE_HERE);
    _configurationWidget = widget;

    auto* scrollArea = new QScrollArea(this);
    Brindle::theme.enrich(scrollArea);
    scrollArea->setWidgetResizable(true);
    scrollArea->setWidget(widget);
    _splitter->addWidget(Brindle::theme.getCapWidget(scrollArea));

    const int stored = QSettings().value(SettingsKeys::size, 50).toInt();
    const int share = std::clamp(stored, 0, 100); // percent of the height for the form
    _splitter->setSizes({10000 - share * 100, share * 100});
}

Brindle::strings IPLeaf::getVariants() const {
    return Brindle::ListCollection<std::string>(_description.variants);
}

std::string IPLeaf::getEscapedName() const {
    QString name = QString::fromStdString(getName()).toLower();
    return name.replace(' ', '_').toStdString();
}

bool IPLeaf::isForVariant(const std::string& variant) const {
    return std::ranges::find(_description.variants, variant) != _description.variants.end();
}

bool IPLeaf::isOurs(const char* name) const {
    return isFromCompany("Orvane") && getName() == name;
}

void IPLeaf::onLinkClicked(const QUrl& url) {
    if (!QDesktopServices::openUrl(url))
        Brindle::console.error("Could not open link " + url.path().toStdString() + ".");
}

} // namespace Velmora
