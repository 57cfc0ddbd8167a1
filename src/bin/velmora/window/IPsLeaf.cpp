#include <velmora/window/IPsLeaf.h>

#include <velmora/catalogue/IPHandler.h>
#include <velmora/catalogue/IPLeaf.h>
#include <velmora/catalogue/PageZoom.h>
#include <velmora/settings/SettingsKeys.h>
#include <velmora/widgets/SearchEdit.h>
#include <velmora/window/IPTreeView.h>
#include <velmora/window/TitleLine.h>

#include <Brindle/widgets/Theme.h>

#include <QFileInfo>
#include <QGridLayout>
#include <QItemSelectionModel>
#include <QSettings>
#include <QShortcut>
#include <QStandardItem>

#include <algorithm>

namespace Velmora {

namespace {

constexpr int treeWidth = 272; // pixels; the longest name beside a scroll bar

const QString everything = QStringLiteral("All");

// Of the settings: the preference "size" and the share of the form that was chosen under it; the zoom of the pages.
const QString formShareKey = QStringLiteral("formShare");
const QString zoomKey = QStringLiteral("pageZoom");

/// A filter that offers everything first, apart from the rest.
QComboBox* createFilter(const char* name, const QString& toolTip, QWidget* parent) {
    auto* combo = new QComboBox(parent);
    combo->setObjectName(QLatin1String(name));
    combo->setToolTip(toolTip);
    combo->setAccessibleName(toolTip);
    Brindle::theme.enrich(combo);
    combo->addItem(everything);
    combo->insertSeparator(1);
    return combo;
}

QString wantedText(const QComboBox* combo) {
    const QString text = combo->currentText();
    return text == everything ? QString() : text;
}

QStandardItem* createSelectableItem(const std::string& text) {
    auto* item = new QStandardItem(QString::fromStdString(text));
    item->setFlags(Qt::ItemIsSelectable | Qt::ItemIsEnabled);
    return item;
}

} // namespace

IPsLeaf::IPsLeaf(QWidget* parent, TitleLine* titleLine) : QWidget(parent), _titleLine(titleLine) {
    qRegisterMetaType<IPLeaf*>("IPLeaf*");
    createWidgets();
    fillTree();
    fillCategories();
    load();
    for (const QComboBox* combo : {_variantCombo, _categoryCombo})
        connect(combo, QOverload<int>::of(&QComboBox::currentIndexChanged), this, &IPsLeaf::filterTree);
}

// They stand here, where the browser is known; the tree knows its filter alone.
IPTreeView::IPTreeView(IPsLeaf* parent) : QTreeView(parent) {
    setUp();
}

IPsLeaf* IPTreeView::getIPsLeaf() const {
    return dynamic_cast<IPsLeaf*>(parent());
}

void IPsLeaf::createWidgets() {
    auto* layout = new QGridLayout;
    layout->setContentsMargins(0, 0, 0, 0); // in line with the folio's title
    layout->setColumnStretch(1, 1);

    _variantCombo = createFilter("variantCombo", tr("Show the IPs for this variant"), this);
    for (const std::string& variant : ipHandler->getIPLeaves().getVariants())
        _variantCombo->addItem(QString::fromStdString(variant));
    layout->addWidget(_variantCombo, 0, 0);

    _leafStack = new QStackedWidget(this);
    _leafStack->setObjectName(QStringLiteral("leafStack"));
    layout->addWidget(_leafStack, 0, 1, -1, 1);

    _treeView = new IPTreeView(this);
    _treeView->setObjectName(QStringLiteral("treeView"));
    _treeView->setAccessibleName(tr("IPs by category"));
    _treeView->setMinimumWidth(treeWidth);
    layout->addWidget(_treeView, 1, 0);

    _categoryCombo = createFilter("categoryCombo", tr("Show the IPs of this category"), this);
    layout->addWidget(_categoryCombo, 2, 0);

    createSearch();
    layout->addWidget(_searchEdit, 3, 0);

    connect(_treeView->selectionModel(), &QItemSelectionModel::currentChanged, this, &IPsLeaf::onIPSelected);
    connect(_leafStack, &QStackedWidget::currentChanged, this, &IPsLeaf::shownLeafChanged);
    setLayout(layout);
}

void IPsLeaf::createSearch() {
    _searchEdit = new SearchEdit(this);
    _searchEdit->setObjectName(QStringLiteral("searchEdit"));
    _searchEdit->setPlaceholderText(tr("Search"));
    _searchEdit->setToolTip(
        tr("Show the IPs with these words in name, category, title or keywords (Ctrl+F); Enter opens the first one"));
    _searchEdit->setAccessibleName(tr("Search"));
    connect(_searchEdit, &SearchEdit::textChanged, this, &IPsLeaf::narrowTree);
    connect(_searchEdit, &SearchEdit::returnPressed, this, &IPsLeaf::openFound);
    connect(_searchEdit, &SearchEdit::left, this, [this] {
        openFound();
        _treeView->setFocus();
    });
    connect(new QShortcut(QKeySequence::Find, this), &QShortcut::activated, _searchEdit, [this] {
        _searchEdit->setFocus();
        _searchEdit->selectAll();
    });
}

void IPsLeaf::filterTree() {
    _treeView->setFilter({wantedText(_variantCombo), wantedText(_categoryCombo), _searchEdit->text().trimmed()});
}

/// The page that is shown stays; its row is the current one again as soon as the tree has it.
void IPsLeaf::narrowTree() {
    _treeView->setCurrentLeaf(nullptr); // or a neighbour of a row that goes would be chosen
    filterTree();
    _treeView->setCurrentLeaf(getShownLeaf());
}

/// Shows the page of the first IP that the tree has; the one that is shown stays if the tree has it.
void IPsLeaf::openFound() {
    if (IPLeaf* leaf = _treeView->getFirstLeaf(getShownLeaf()))
        showLeaf(leaf);
}

void IPsLeaf::fillTree() {
    CategoryNodes nodes;
    QList<QStandardItem*> topNodes; // which the model gets when they are whole: it tells of every row that it gets
    QStandardItem* firstItem = nullptr;
    for (IPLeaf* leaf : ipHandler->getIPLeaves()) {
        QStandardItem* item = createItem(*leaf);
        if (!firstItem)
            firstItem = item;
        _leafStack->addWidget(leaf);
        leaf->setPageOpener([this](const QUrl& link) { return showPage(link); });
        connect(leaf, &IPLeaf::formShareChanged, this, [this](int share) { _formShare = share; });
        getCategoryNode(leaf->getCategory(), nodes, topNodes)->appendRow(item);
    }
    for (QStandardItem* node : topNodes)
        _treeView->getModel()->appendRow(node);
    _treeView->expandAll();
    if (firstItem)
        _treeView->select(firstItem);
}

QStandardItem* IPsLeaf::createItem(IPLeaf& leaf) const {
    QString variants;
    for (const std::string& variant : leaf.getVariants())
        variants += QString::fromStdString(variant) + ",";
    variants.chop(1);

    QStandardItem* item = createSelectableItem(leaf.getName());
    item->setData(QVariant::fromValue(&leaf), IPTreeView::LeafRole);
    item->setData(QString::fromStdString(leaf.getCategory()), IPTreeView::CategoryRole);
    item->setData(variants, IPTreeView::VariantsRole);
    return item;
}

/// The node of the category path; nodes of it that do not exist yet are created.
QStandardItem* IPsLeaf::getCategoryNode(const std::string& category, CategoryNodes& nodes,
                                        QList<QStandardItem*>& topNodes) {
    if (const auto node = nodes.find(category); node != nodes.end())
        return node->second;
    QStandardItem* node = nullptr;
    for (std::size_t begin = 0, end = 0; end != category.npos; begin = end + 1) {
        end = category.find('/', begin);
        const std::string path = category.substr(0, end);
        QStandardItem*& child = nodes[path];
        if (!child) {
            child = createSelectableItem(path.substr(begin));
            child->setData(QString::fromStdString(path), IPTreeView::CategoryRole);
            if (node)
                node->appendRow(child);
            else
                topNodes += child;
        }
        node = child;
    }
    return node;
}

void IPsLeaf::fillCategories() {
    const QStandardItemModel* model = _treeView->getModel();
    for (int row = 0; row < model->rowCount(); ++row)
        _categoryCombo->addItem(model->item(row)->text());
}

IPLeaf* IPsLeaf::getShownLeaf() const {
    return qobject_cast<IPLeaf*>(_leafStack->currentWidget());
}

void IPsLeaf::showLeaf(IPLeaf* leaf) {
    _leafStack->setCurrentWidget(leaf);
    _treeView->setCurrentLeaf(leaf);
}

bool IPsLeaf::showPage(const QUrl& link) {
    const QFileInfo page(link.toLocalFile());
    if (!page.isFile())
        return false;
    const auto leaves = ipHandler->getIPLeaves();
    const auto leaf = std::ranges::find_if(leaves, [&](const IPLeaf* each) {
        return page == QFileInfo(QString::fromStdString(each->getDescription().htmlFilename));
    });
    if (leaf == leaves.end())
        return false;
    showLeaf(*leaf);
    return true;
}

/// The share counts as long as the preference for it is what it was.
void IPsLeaf::load() {
    const QSettings settings;
    const QStringList share = settings.value(formShareKey).toStringList();
    if (share.size() == 2 && share.first() == settings.value(SettingsKeys::size, SettingsKeys::defaultSize).toString())
        _formShare = share.last().toInt();
    PageZoom::set(settings.value(zoomKey, 1).toDouble());
    connect(_leafStack, &QStackedWidget::currentChanged, this, &IPsLeaf::applyFormShare);
    applyFormShare();
}

void IPsLeaf::save(QSettings& settings) const {
    const QString size = settings.value(SettingsKeys::size, SettingsKeys::defaultSize).toString();
    if (_formShare)
        settings.setValue(formShareKey, QStringList{size, QString::number(*_formShare)});
    if (settings.contains(zoomKey) || PageZoom::get() != 1)
        settings.setValue(zoomKey, PageZoom::get());
}

void IPsLeaf::applyFormShare() {
    if (IPLeaf* leaf = getShownLeaf(); leaf && _formShare)
        leaf->setFormShare(*_formShare);
}

void IPsLeaf::showEvent(QShowEvent* event) {
    _titleLine->setTitle(QStringLiteral("IPs"));
    QWidget::showEvent(event);
}

void IPsLeaf::onIPSelected(const QModelIndex& index) {
    if (!index.isValid())
        return;
    if (auto* leaf = index.data(IPTreeView::LeafRole).value<IPLeaf*>())
        _leafStack->setCurrentWidget(leaf);
}

} // namespace Velmora
