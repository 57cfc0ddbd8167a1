#pragma once

#include <QPersistentModelIndex>
#include <QSortFilterProxyModel>
#include <QStandardItemModel>
#include <QString>
#include <QStringList>
#include <QTreeView>

#include <set>

namespace Velmora {

class IPLeaf;
class IPsLeaf;

/// The tree of the IP browser: IPs below the nodes of their category, filtered by the browser's variant, category and
/// search. A node that a filter brings back is as open as the user left it; a search opens every node.
class IPTreeView : public QTreeView {
    Q_OBJECT

public:
    /// What the items carry beside their text.
    enum Role {
        LeafRole = Qt::UserRole,         ///< `IPLeaf*`; IPs only.
        CategoryRole = Qt::UserRole + 1, ///< Category path down to the item.
        VariantsRole = Qt::UserRole + 2, ///< Variants joined by ","; IPs only.
    };

    /// What the user wants to see; an empty text stands for all.
    struct Filter {
        QString variant;
        QString category; ///< The beginning of the path.
        QString text;     ///< What the IPs are found by.
    };

    explicit IPTreeView(IPsLeaf* parent);

    /// The unfiltered items.
    QStandardItemModel* getModel() const;
    /// The parent; null when it is no browser.
    IPsLeaf* getIPsLeaf() const;

    /// Hides what the filter excludes; when nothing is left it says so.
    void setFilter(const Filter& filter);

    /// Adds the item's row to the selection; the current index stays.
    void select(QStandardItem* item);
    /// Makes the IP with that page the current row; no row when the filters hide it.
    void setCurrentLeaf(const IPLeaf* leaf);
    /// The page of the first IP that the filters show, that of the preferred one if they show it; null when they hide
    /// all.
    IPLeaf* getFirstLeaf(const IPLeaf* preferred) const;

    static const QStringList& getHeaderList();

public Q_SLOTS:
    void invalidateFilter();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    class SortFilterProxyModel;

    void setUp();
    void initialize();
    void rememberNode(const QModelIndex& index, bool isClosed);
    void restoreNodes();

    SortFilterProxyModel* _proxy = nullptr;
    std::set<QPersistentModelIndex> _closedNodes; // by the user; in the unfiltered items
};

/// Hides what the filter excludes. Items without the text that a part of it looks at pass that part; a search also
/// hides the nodes below which it finds nothing.
class IPTreeView::SortFilterProxyModel : public QSortFilterProxyModel {
public:
    using QSortFilterProxyModel::QSortFilterProxyModel;

    using QSortFilterProxyModel::invalidateFilter;
    void setFilter(const Filter& filter);
    bool isSearching() const { return !_filter.text.isEmpty(); }

protected:
    bool filterAcceptsRow(int sourceRow, const QModelIndex& sourceParent) const override;

private:
    bool passesSearch(const QModelIndex& index) const;

    Filter _filter;
};

} // namespace Velmora
