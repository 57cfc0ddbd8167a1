#pragma once

#include <QLineEdit>

namespace Velmora {

/// A line in which the user types what a list beside it is searched for: Escape empties it, Down leaves it for the
/// list.
class SearchEdit : public QLineEdit {
    Q_OBJECT

public:
    /// With a button that empties it.
    explicit SearchEdit(QWidget* parent);

Q_SIGNALS:
    /// The user goes on in the list.
    void left();

protected:
    void keyPressEvent(QKeyEvent* event) override;
};

} // namespace Velmora
