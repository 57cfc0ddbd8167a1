#pragma once

#include <QFrame>

namespace Brindle {

/// A hairline frame around one widget.
class CapFrame : public QFrame {
    Q_OBJECT

public:
    /// The framed widget becomes a child; the parent is kept, not owned.
    CapFrame(QWidget* child, QWidget* parent);
};

} // namespace Brindle
