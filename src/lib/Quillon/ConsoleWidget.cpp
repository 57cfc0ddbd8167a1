#include <Quillon/ConsoleWidget.h>

#include <Brindle/core/Console.h>
#include <Brindle/widgets/FileMenus.h>
#include <Brindle/widgets/QtLabel.h>
#include <Brindle/widgets/Theme.h>

#include <QAction>
#include <QContextMenuEvent>
#include <QFontDatabase>
#include <QKeySequence>
#include <QMenu>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextBlockUserData>

#include <utility>

namespace Quillon {

namespace {

constexpr int fewestLines = 3; // that stay visible in the smallest pane

/// The files that a line tells of.
class LineFiles : public QTextBlockUserData {
public:
    explicit LineFiles(std::vector<std::string> filenames) : _filenames(std::move(filenames)) {}
    const std::vector<std::string>& get() const { return _filenames; }

private:
    const std::vector<std::string> _filenames;
};

const char* colorOf(Brindle::ConsoleLineKind kind) {
    switch (kind) {
    case Brindle::ConsoleLineKind::Error:
    case Brindle::ConsoleLineKind::Failure:
        return "error";
    case Brindle::ConsoleLineKind::Remark:
        return "remark";
    case Brindle::ConsoleLineKind::Text:
        break;
    }
    return "text";
}

} // namespace

ConsoleWidget::ConsoleWidget(QWidget* parent) : QPlainTextEdit(parent) {
    setReadOnly(true);
    setUndoRedoEnabled(false);
    setMaximumBlockCount(historyLength);
    setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setAccessibleName(tr("Console"));
    setAccessibleDescription(tr("Progress and errors"));
    setPlaceholderText(tr("Progress and errors are shown here."));
    addMenuActions();
    Brindle::console.attach(*this);
}

QSize ConsoleWidget::minimumSizeHint() const {
    const int margins = 2 * (frameWidth() + static_cast<int>(document()->documentMargin()));
    return {QPlainTextEdit::minimumSizeHint().width(), fewestLines * fontMetrics().lineSpacing() + margins};
}

void ConsoleWidget::onConsoleLine(Brindle::ConsoleLineKind kind, const std::string& line) {
    QScrollBar* bar = verticalScrollBar();
    const bool isFollowing = isAtEnd() || kind == Brindle::ConsoleLineKind::Error;
    const int droppedLines = blockCount() == historyLength ? document()->firstBlock().lineCount() : 0;
    const int place = bar->value() - droppedLines;
    QTextCharFormat format;
    format.setForeground(Brindle::theme.getColor(colorOf(kind)));
    QTextCursor cursor(document());
    cursor.movePosition(QTextCursor::End);
    cursor.beginEditBlock();
    if (!document()->isEmpty())
        cursor.insertBlock();
    cursor.insertText(Brindle::toQString(line), format);
    cursor.endEditBlock();
    bar->setValue(isFollowing ? bar->maximum() : place);
}

void ConsoleWidget::onConsoleBreak() {
    if (!document()->lastBlock().text().isEmpty())
        onConsoleLine(Brindle::ConsoleLineKind::Text, {});
}

void ConsoleWidget::onConsoleFiles(const std::vector<std::string>& filenames) {
    document()->lastBlock().setUserData(new LineFiles(filenames));
}

bool ConsoleWidget::isAtEnd() const {
    return verticalScrollBar()->value() == verticalScrollBar()->maximum();
}

/// A lower pane shows the same first line, and would be off the end without the user's doing.
void ConsoleWidget::resizeEvent(QResizeEvent* event) {
    const bool isFollowing = isAtEnd();
    QPlainTextEdit::resizeEvent(event);
    if (isFollowing)
        verticalScrollBar()->setValue(verticalScrollBar()->maximum());
}

/// Of the line below the mouse, or that of the text cursor for a key.
void ConsoleWidget::contextMenuEvent(QContextMenuEvent* event) {
    const bool isByKey = event->reason() == QContextMenuEvent::Keyboard;
    const QTextCursor cursor = isByKey ? textCursor() : cursorForPosition(event->pos());
    QMenu menu(this);
    if (const auto* files = static_cast<const LineFiles*>(cursor.block().userData())) {
        Brindle::addFileMenus(menu, files->get());
        menu.addSeparator();
    }
    menu.addActions(actions());
    menu.exec(isByKey ? viewport()->mapToGlobal(cursorRect(cursor).bottomLeft()) : event->globalPos());
}

QAction* ConsoleWidget::addMenuAction(const QString& text, const char* iconName, const QKeySequence& shortcut) {
    auto* action = new QAction(Brindle::theme.getIcon(iconName), text, this);
    action->setShortcut(shortcut);
    action->setShortcutContext(Qt::WidgetShortcut);
    addAction(action);
    return action;
}

void ConsoleWidget::addMenuActions() {
    QAction* copyAction = addMenuAction(tr("&Copy"), "copy", QKeySequence::Copy);
    copyAction->setEnabled(false);
    connect(copyAction, &QAction::triggered, this, &QPlainTextEdit::copy);
    connect(this, &QPlainTextEdit::copyAvailable, copyAction, &QAction::setEnabled);

    QAction* selectAllAction = addMenuAction(tr("Select &All"), "select-all", QKeySequence::SelectAll);
    connect(selectAllAction, &QAction::triggered, this, &QPlainTextEdit::selectAll);

    QAction* clearAction = addMenuAction(tr("C&lear"), "clear", QKeySequence());
    clearAction->setEnabled(false);
    connect(clearAction, &QAction::triggered, this, &QPlainTextEdit::clear);
    connect(this, &QPlainTextEdit::textChanged, clearAction,
            [this, clearAction] { clearAction->setEnabled(!document()->isEmpty()); });
}

} // namespace Quillon
