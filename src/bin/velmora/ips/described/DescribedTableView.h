#pragma once

#include <velmora/ips/described/FormDescription.h>
#include <velmora/tables/LineTableView.h>

QT_BEGIN_NAMESPACE
class QSpinBox;
QT_END_NAMESPACE

namespace Velmora {

class Form;

/// The table of lines that a form described as data holds.
class DescribedTableView : public LineTableView {
    Q_OBJECT

public:
    /// Of no line until it is told who counts them. The description is kept, not owned.
    DescribedTableView(const QString& key, const QString& formGroup, const DescribedTable& description);

    /// From now on the table has as many lines as the number tells, which is kept, not owned.
    void setCount(const QSpinBox* count);

    /// By the place of the column in the description.
    QStandardItem* getCell(int row, std::size_t column) const;
    /// By the number of a visible row and the title of the column; null when there is no such cell.
    QStandardItem* findCell(const QString& row, const QString& title) const;
    /// The visible lines as a Python list of tuples. Throws Brindle::InvalidRequest, with the fields "key" and "value",
    /// for a text that holds a control character; the cell is marked on the form.
    std::string toPython(const Form& form, const std::string& argument);

private:
    class CountProxyModel;

    const DescribedTable& _description;
    const QSpinBox* _count = nullptr;
};

} // namespace Velmora
