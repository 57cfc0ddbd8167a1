#include <velmora/catalogue/IPLeaf.h>

#include <velmora/catalogue/DescriptionFile.h>
#include <velmora/catalogue/DescriptionPage.h>
#include <velmora/catalogue/GeneratorLeaf.h>
#include <velmora/catalogue/IPForms.h>
#include <velmora/catalogue/PageTabs.h>
#include <velmora/configuration/FormConfiguration.h>
#include <velmora/form/Form.h>
#include <velmora/form/FormArea.h>
#include <velmora/settings/SettingsKeys.h>

#include <Brindle/collections/ListCollection.h>
#include <Brindle/core/Console.h>
#include <Brindle/core/Exception.h>
#include <Brindle/core/Text.h>
#include <Brindle/widgets/Theme.h>

#include <QDesktopServices>
#include <QEvent>
#include <QScrollBar>
#include <QSettings>
#include <QVBoxLayout>

#include <algorithm>
#include <tuple>

namespace Velmora {

namespace {

constexpr int whole = 1000; // of which a share is a part

} // namespace

IPLeaf::IPLeaf(const std::string& descriptionFilename, Content content)
    : _descriptionFilename(descriptionFilename),
      _description(Brindle::locatedAt(BRINDLE_HERE, [&] { return readDescriptionFile(descriptionFilename); })),
      _content(content),
      _makePage([this] { createPage(); }) {
    if (content != Content::WhenNeeded)
        completePage();
}

void IPLeaf::createPage() {
    if (_content != Content::FormOnly)
        createDescriptionPage();
    createForm();
    if (!isWindow())
        orderStops();
}

void IPLeaf::completePage() const {
    if (const auto make = std::exchange(_makePage, nullptr))
        make();
}

/// Tab comes to what was made late where the page is, not after all that the window had by then.
void IPLeaf::orderStops() {
    QList<QWidget*> stops;
    for (QWidget* each = window()->nextInFocusChain(); each != window(); each = each->nextInFocusChain())
        if (isAncestorOf(each) && each->window() == window() && (each->focusPolicy() & Qt::TabFocus) != 0)
            stops += each;
    QWidget* last = previousInFocusChain();
    while ((last->focusPolicy() & Qt::TabFocus) == 0 && last != this) // nothing can be put behind such a one
        last = last->previousInFocusChain();
    for (QWidget* stop : stops) {
        setTabOrder(last, stop);
        last = stop;
    }
}

void IPLeaf::createDescriptionPage() {
    auto* layout = new QVBoxLayout;
    layout->setContentsMargins(0, 0, 0, 0);
    _splitter = new QSplitter(Qt::Vertical);
    layout->addWidget(_splitter);

    _page = DescriptionPage::maker(QString::fromStdString(_description.htmlFilename),
                                   [this](const QUrl& link) { onLinkClicked(link); });
    _splitter->addWidget(Brindle::theme.getCapWidget(_page->getWidget()));
    setLayout(layout);
}

void IPLeaf::createForm() {
    if (const auto form = Velmora::makeForm(*this))
        setForm(*form);
    else
        _makeForm = [this] {
            createDescribedForm();
            if (!isWindow())
                orderStops();
        };
}

void IPLeaf::createDescribedForm() {
    try {
        if (const auto form = makeDescribedForm(*this))
            setForm(*form);
    } catch (const Brindle::Critical& exception) {
        if (_content == Content::FormOnly)
            throw;
        Brindle::console.error(exception);
    }
}

bool IPLeaf::mayHaveForm() const {
    return _generatorLeaf || (!_configurationWidget && (knowsForm(*this) || bringsForm(_description)));
}

void IPLeaf::requireGoodForm() const {
    completePage();
    if (_makeForm)
        requireFormDescription(_description);
}

void IPLeaf::completeForm() const {
    completePage();
    if (const auto make = std::exchange(_makeForm, nullptr))
        make();
}

void IPLeaf::setForm(const IPForm& form) {
    _generatorLeaf = form.leaf;
    setConfigurationWidget(form.widget);
    connect(&form.leaf->getForm().getEdits(), &EditWatch::edited, this, &IPLeaf::edited);
    connect(&form.leaf->getForm().getMark(), &CheckMark::refused, this, &IPLeaf::refused);
}

void IPLeaf::showEvent(QShowEvent* event) {
    completeForm();
    layout()->activate(); // Children that came just now are neither placed nor shown by whoever shows the page.
    _splitter->show();
    QWidget::showEvent(event);
}

void IPLeaf::setConfigurationWidget(QWidget* widget) {
    if (!widget)
        throw Brindle::located(Brindle::Critical("Null configurationWidget"), BRINDLE_HERE);
    completePage();
    if (_configurationWidget)
        throw Brindle::located(Brindle::Critical("configurationWidget already set"), BRINDLE_HERE);
    _configurationWidget = widget;
    _makeForm = nullptr;
    if (_splitter)
        showConfigurationWidget();
}

void IPLeaf::showConfigurationWidget() {
    _formArea = new FormArea(_configurationWidget, this);
    Brindle::theme.enrich(_formArea);
    _splitter->addWidget(Brindle::theme.getCapWidget(_formArea));
    _splitter->handle(1)->installEventFilter(this);
    connect(_splitter, &QSplitter::splitterMoved, this, &IPLeaf::tellFormShare);

    const int stored = QSettings().value(SettingsKeys::size, SettingsKeys::defaultSize).toInt();
    const int share = std::clamp(stored, 0, 100); // percent of the height for the form
    _splitter->setSizes({10000 - share * 100, share * 100});
    if (_formShare)
        setFormShare(*_formShare);
}

void IPLeaf::addTab(const QString& title, const QKeySequence& shortcut, QWidget* page) {
    completePage();
    if (!_tabs)
        _tabs = new PageTabs(_splitter->widget(0), tr("Data sheet"), QKeySequence(QStringLiteral("Alt+D")));
    _tabs->addPage(title, shortcut, page);
}

void IPLeaf::setSummary(QWidget* line) {
    completePage();
    layout()->addWidget(line);
}

void IPLeaf::setFormShare(int share) {
    _formShare = share;
    if (_formArea)
        _splitter->setSizes({(whole - share) * whole, share * whole});
}

void IPLeaf::tellFormShare() {
    const QList<int> sizes = _splitter->sizes();
    Q_EMIT formShareChanged(sizes.at(1) * whole / std::max(1, sizes.at(0) + sizes.at(1)));
}

bool IPLeaf::eventFilter(QObject* object, QEvent* event) {
    if (event->type() != QEvent::MouseButtonDblClick)
        return QWidget::eventFilter(object, event);
    if (_splitter->sizes().at(0) > 0) {
        _lastSplit = _splitter->saveState();
        _splitter->setSizes({0, whole});
    } else {
        _splitter->restoreState(_lastSplit);
    }
    tellFormShare();
    return true;
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

bool IPLeaf::isFoundBy(const QString& text) const {
    if (!_searchTerms)
        _searchTerms.emplace(_description);
    return _searchTerms->match(text);
}

bool IPLeaf::isOurs(const char* name) const {
    return isFromCompany("Orvane") && getName() == name;
}

Form* IPLeaf::getForm() const {
    completeForm();
    return _generatorLeaf ? &_generatorLeaf->getForm() : nullptr;
}

Generation IPLeaf::getGeneration() const {
    completeForm();
    return _generatorLeaf->getGeneration();
}

Configuration IPLeaf::getConfiguration() const {
    completeForm();
    Configuration configuration(getCompany(), getName(), getUID());
    addFormValues(configuration, _generatorLeaf->getForm());
    return configuration;
}

void IPLeaf::setConfiguration(const Configuration& configuration) {
    constexpr std::size_t longestUID = 80; // characters
    const auto describe = [](const std::string& name, const std::string& company, const std::string& uid) {
        return getIPLabel(name, company) + " (uid " + Brindle::shortened(uid, longestUID) + ")";
    };
    const auto whoseIsIt = [](const auto& ip) { return std::tuple(ip.getName(), ip.getCompany(), ip.getUID()); };
    const auto wanted = whoseIsIt(configuration);
    const auto present = whoseIsIt(*this);
    if (wanted != present) {
        configuration.refuseIP("Configuration is for " + std::apply(describe, wanted) + ", not for " +
                               std::apply(describe, present));
    }
    completeForm();
    setFormValues(_generatorLeaf->getForm(), configuration);
    if (_formArea)
        _formArea->verticalScrollBar()->setValue(0);
}

void IPLeaf::onLinkClicked(const QUrl& url) {
    completePage();
    if ((_page && _page->goTo(url)) || _pageOpener(url))
        return;
    if (!QDesktopServices::openUrl(url))
        Brindle::console.error("Could not open link " + url.path().toStdString() + ".");
}

} // namespace Velmora
