#pragma once

#include <QMenu>
#include <QUndoGroup>

namespace Velmora {

class Folio;

/// The Edit menu: takes back what replaced values in the form of the IP that is shown, and does it again.
class EditMenu : public QMenu {
    Q_OBJECT

public:
    /// The folio is kept, not owned.
    EditMenu(Folio* folio, QWidget* parent);

private:
    void followShownIP();

    Folio* const _folio;
    QUndoGroup _histories;
};

} // namespace Velmora
