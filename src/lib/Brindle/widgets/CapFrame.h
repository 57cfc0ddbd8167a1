#pragma once

#include <QFrame>

namespace Brindle {

/// A hairline frame around one widget. Its dynamic property "focused" tells the style sheet whether the widget has the
/// focus, which not every kind of widget shows by itself.
class CapFrame : public QFrame {
    Q_OBJECT

public:
    /// The framed widget becomes a child; the parent is kept, not owned.
    CapFrame(QWidget* child, QWidget* parent);

protected:
    bool eventFilter(QObject* object, QEvent* event) override;
};

} // namespace Brindle
