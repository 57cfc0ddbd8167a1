#pragma once

#include <QAbstractButton>
#include <QString>

#include <string>

namespace Velmora {

/// A button that looks like a line of text, of which it shows as much as it has room for; the tool tip is the whole.
class TextButton : public QAbstractButton {
    Q_OBJECT

public:
    explicit TextButton(QWidget* parent);

    /// `colorName` is one of the theme's. What leads nowhere takes no clicks.
    void setLine(const QString& text, const std::string& colorName, bool leadsSomewhere);

    const QString& getText() const { return _text; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    QString _text;
    std::string _colorName;
};

} // namespace Velmora
