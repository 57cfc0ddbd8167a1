#pragma once

#include <QPlainTextEdit>

namespace Velmora {

class FindBar;

/// Shows a generated file, highlighted; Ctrl+F finds a text. Of what would keep the window from its other work, a very
/// long file or line, it shows the beginning.
class HdlView : public QPlainTextEdit {
    Q_OBJECT

public:
    explicit HdlView(QWidget* parent);

    /// The text of a file of that name. What the user sees stays in place where the text has that place.
    void setFile(const QString& filename, const QString& text);

protected:
    bool event(QEvent* event) override;

private:
    void openFindBar();
    bool findText(const QString& text, bool isBackward);
    void highlight(const QString& filename);

    FindBar* _findBar = nullptr;
    QString _text; // as a whole
};

} // namespace Velmora
