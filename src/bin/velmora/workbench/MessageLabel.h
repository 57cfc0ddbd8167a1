#pragma once

#include <QLabel>

#include <string>

namespace Velmora {

/// Plain text that tells how things stand, in the colour of what it tells.
class MessageLabel : public QLabel {
    Q_OBJECT

public:
    explicit MessageLabel(const char* objectName);

    /// The colour is one of the theme, by its name.
    void tell(const QString& text, const std::string& colorName = "text");
};

} // namespace Velmora
