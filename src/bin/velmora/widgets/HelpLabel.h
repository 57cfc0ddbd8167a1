#pragma once

#include <QLabel>

namespace Velmora {

/// A framed, tinted hint beside a form field.
class HelpLabel : public QLabel {
    Q_OBJECT

public:
    HelpLabel(const QString& text, QWidget* parent);
};

} // namespace Velmora
