#pragma once

#include <QSortFilterProxyModel>

namespace Velmora {

/// Shows the first rows of a table of lines, as many as its form counts lines.
class LineCountProxyModel : public QSortFilterProxyModel {
public:
    using QSortFilterProxyModel::QSortFilterProxyModel;

    /// To be called when the count has changed.
    using QSortFilterProxyModel::invalidateFilter;

protected:
    virtual int getLineCount() const = 0;
    bool filterAcceptsRow(int sourceRow, const QModelIndex&) const override { return sourceRow < getLineCount(); }
};

} // namespace Velmora
