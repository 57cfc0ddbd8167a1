#pragma once

#include <QSortFilterProxyModel>
#include <QStandardItemModel>
#include <QStringList>
#include <QTreeView>

namespace Velmora {

class IPsLeaf;

/// The tree of the IP browser: IPs below the nodes of their category, filtered by the browser's variant and category.
class IPTreeView : public QTreeView {
    Q_OBJECT

public:
    /// What the items carry beside their text.
    enum Role {
        LeafRole = Qt::UserRole,         ///< `IPLeaf*`; IPs only.
        CategoryRole = Qt::UserRole + 1, ///< Category path down to the item.
        VariantsRole = Qt::UserRole + 2, ///< Variants joined by ","; IPs only.
    };

    explicit IPTreeView(IPsLeaf* parent);

    /// The unfiltered items.
    QStandardItemModel* getModel() const;
    IPsLeaf* getIPsLeaf() const;

    /// Adds the item's row to the selection; the current index stays.
    void select(QStandardItem* item);

    static const QStringList& getHeaderList();

public Q_SLOTS:
    void invalidateFilter();

private:
    class SortFilterProxyModel;

    void initialize();

    SortFilterProxyModel* _proxy = nullptr;
};

/// Hides what the browser's filters exclude. Items without the text that a filter looks at pass it.
class IPTreeView::SortFilterProxyModel : public QSortFilterProxyModel {
public:
    explicit SortFilterProxyModel(IPTreeView* view);

    using QSortFilterProxyModel::invalidateFilter;

protected:
    bool filterAcceptsRow(int sourceRow, const QModelIndex& sourceParent) const override;

private:
    IPTreeView* const _view;
};

} // namespace Velmora
