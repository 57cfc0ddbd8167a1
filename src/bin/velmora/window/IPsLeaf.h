#pragma once

#include <QComboBox>
#include <QList>
#include <QModelIndex>
#include <QStackedWidget>
#include <QWidget>

#include <map>
#include <optional>
#include <string>

QT_BEGIN_NAMESPACE
class QSettings;
class QStandardItem;
QT_END_NAMESPACE

namespace Velmora {

class Folio;
class IPLeaf;
class IPTreeView;
class SearchEdit;
class TitleLine;

/// The IP browser: the catalogue as a tree with filters and a search on the left, the page of the current IP on the
/// right. It is built from the catalogue as the handler holds it at construction and owns the pages from then on.
class IPsLeaf : public QWidget {
    Q_OBJECT

public:
    explicit IPsLeaf(Folio* folio);

    /// The IP whose page is on the right; null in an empty catalogue.
    IPLeaf* getShownLeaf() const;
    /// Shows the page of an IP of the browser, whatever the filters hide.
    void showLeaf(IPLeaf* leaf);

    /// Stores the zoom of the pages, and the share of the form if the user has changed it.
    void save(QSettings& settings) const;

Q_SIGNALS:
    /// Another page is on the right.
    void shownLeafChanged();

protected:
    void showEvent(QShowEvent* event) override;

public Q_SLOTS:
    /// Shows the page of the IP at that index of the tree; a category leaves the page as it is.
    void onIPSelected(const QModelIndex& index);

private:
    using CategoryNodes = std::map<std::string, QStandardItem*>;

    IPsLeaf(QWidget* parent, TitleLine* titleLine);
    void createWidgets();
    void createSearch();
    void filterTree();
    void narrowTree();
    void openFound();
    void fillTree();
    void fillCategories();
    QStandardItem* createItem(IPLeaf& leaf) const;
    static QStandardItem* getCategoryNode(const std::string& category, CategoryNodes& nodes,
                                          QList<QStandardItem*>& topNodes);

    void load();
    void applyFormShare();
    /// Shows the IP whose description page that is; false when there is none.
    bool showPage(const QUrl& link);

    TitleLine* const _titleLine;
    std::optional<int> _formShare; // of all pages, as the user has chosen it
    QComboBox* _variantCombo = nullptr;
    IPTreeView* _treeView = nullptr;
    QComboBox* _categoryCombo = nullptr;
    SearchEdit* _searchEdit = nullptr;
    QStackedWidget* _leafStack = nullptr;
};

} // namespace Velmora
