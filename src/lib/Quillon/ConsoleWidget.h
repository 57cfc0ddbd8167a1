#pragma once

#include <Brindle/core/ConsoleObserver.h>

#include <QPlainTextEdit>

QT_BEGIN_NAMESPACE
class QAction;
class QKeySequence;
QT_END_NAMESPACE

namespace Quillon {

/// The pane that shows what the console prints from the pane's construction on: errors and remarks in the theme's
/// colours, a blank line before what is apart, the last 10,000 lines. It follows the end unless the user has scrolled
/// up since the last error, whatever its height becomes. Its context menu copies, selects and clears, and has an entry
/// for each file that the line tells of.
class ConsoleWidget : public QPlainTextEdit, private Brindle::ConsoleObserver {
    Q_OBJECT

public:
    /// Number of lines that are kept.
    static constexpr int historyLength = 10'000;

    explicit ConsoleWidget(QWidget* parent);

    QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    void onConsoleLine(Brindle::ConsoleLineKind kind, const std::string& line) override;
    void onConsoleBreak() override;
    void onConsoleFiles(const std::vector<std::string>& filenames) override;
    bool isAtEnd() const;
    QAction* addMenuAction(const QString& text, const char* iconName, const QKeySequence& shortcut);
    void addMenuActions();
};

} // namespace Quillon
