#pragma once

#include <QObject>
#include <QStandardItem>
#include <QString>
#include <QStringList>
#include <QWidget>

#include <list>
#include <variant>
#include <vector>

namespace Velmora {

class EditWatch;
class LineTableView;

/// A cell of a table.
struct CheckedCell {
    LineTableView* table;
    QStandardItem* item;
    bool operator==(const CheckedCell&) const = default;
};

/// What can be wrong with a form: an editor, a table as a whole, or a cell.
using CheckedPart = std::variant<QWidget*, CheckedCell>;
using CheckedParts = std::vector<CheckedPart>;

/// Marks what a check or a generation refused, until the user edits it. A marked widget has the dynamic property
/// "refused" and a marked cell LineTableModel::ProblemRole; both tell the reason as tool tip and to assistive programs.
/// The sections that marks lie in are opened, the form scrolls to the first mark, and that part gets the focus.
class CheckMark : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    /// Marks the parts, which are kept, not owned, and nothing else. Editing one of them takes the mark off all.
    void set(const CheckedParts& parts, const QString& problem);
    /// The same beside what is marked already. What was marked first keeps the focus; a marked part keeps its reason.
    void add(const CheckedParts& parts, const QString& problem);
    /// Scrolls to the first part and gives it the focus, without a mark.
    static void goTo(const CheckedParts& parts);
    bool isSet() const { return !_refusals.empty(); }

    /// Why parts were marked first; empty when none is.
    QString getProblem() const;
    /// The parts that were marked first as a configuration names them: keys of fields and tables, with "/" and the row
    /// for a cell.
    QStringList getKeys() const;

Q_SIGNALS:
    /// Something is marked that was not.
    void refused();

public Q_SLOTS:
    void clear();

private:
    /// Parts with one problem.
    struct Refusal {
        CheckedParts parts;
        QString problem;
        EditWatch* watch; // the mark's child
    };
    using Place = std::list<Refusal>::iterator;

    bool isMarked(const CheckedPart& part) const;
    void openSections(const QWidget* widget);
    void showFirst();
    void remove(Place refusal);

    std::list<Refusal> _refusals; // in the order in which they came
};

} // namespace Velmora
