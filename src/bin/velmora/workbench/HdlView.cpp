#include <velmora/workbench/HdlView.h>

#include <velmora/catalogue/FindBar.h>
#include <velmora/workbench/HighlightModule.h>

#include <Brindle/core/Exception.h>
#include <Brindle/core/Module.h>
#include <Brindle/widgets/Theme.h>

#include <QFontDatabase>
#include <QKeyEvent>
#include <QScrollBar>

namespace Velmora {

namespace {

constexpr int longestShown = 512 * 1024; // characters
constexpr int longestLine = 1000;        // characters

/// The beginning that can be shown without delay.
QString getBeginning(const QString& text) {
    const bool isWhole = text.size() <= longestShown;
    QStringList lines = text.left(longestShown).split('\n');
    bool isCut = false;
    for (QString& line : lines) {
        if (line.size() > longestLine) {
            line = line.left(longestLine) + QChar(0x2026);
            isCut = true;
        }
    }
    if (!isWhole)
        lines += QObject::tr("... The file goes on; what is copied or generated is the whole.");
    return isWhole && !isCut ? text : lines.join('\n');
}

/// Null without the module: then everything is drawn alike.
const VelmoraHighlightModule* findModule() {
    static const VelmoraHighlightModule* module = []() -> const VelmoraHighlightModule* {
        try {
            return Brindle::Module("velmora_highlight")
                .find<const VelmoraHighlightModule*()>("velmora_highlight_module")();
        } catch (const Brindle::Exception&) {
            return nullptr;
        }
    }();
    return module;
}

} // namespace

HdlView::HdlView(QWidget* parent) : QPlainTextEdit(parent) {
    setObjectName(QStringLiteral("hdlView"));
    setAccessibleName(tr("Generated HDL"));
    setReadOnly(true);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setUndoRedoEnabled(false);
    setTabChangesFocus(true);
    setLineWrapMode(NoWrap);
    setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    Brindle::theme.enrich(this);
}

void HdlView::setFile(const QString& filename, const QString& text) {
    if (text == _text)
        return;
    _text = text;
    const int line = verticalScrollBar()->value();
    setPlainText(QString());
    highlight(filename);
    setPlainText(getBeginning(text));
    verticalScrollBar()->setValue(line);
}

void HdlView::highlight(const QString& filename) {
    const VelmoraHighlightModule* module = findModule();
    if (!module)
        return;
    const auto color = [](const char* name) { return Brindle::theme.getColor(name); };
    module->highlight(*document(), filename.toUtf8().constData(),
                      {color("link"), color("accent_hover"), color("remark"), color("muted")});
}

void HdlView::openFindBar() {
    if (!_findBar)
        _findBar =
            new FindBar(this, [this](const QString& text, bool isBackward) { return findText(text, isBackward); });
    _findBar->open();
}

/// From the selection on, and round the end. While the text is typed, the place that was found may still be it.
bool HdlView::findText(const QString& text, bool isBackward) {
    QTextDocument::FindFlags flags;
    flags.setFlag(QTextDocument::FindBackward, isBackward);
    QTextCursor start = textCursor();
    const QString selected = start.selectedText();
    if (text.size() > selected.size() && text.startsWith(selected, Qt::CaseInsensitive))
        start.setPosition(start.selectionStart());
    QTextCursor found = document()->find(text, start, flags);
    if (found.isNull()) {
        QTextCursor end(document());
        if (isBackward)
            end.movePosition(QTextCursor::End);
        found = document()->find(text, end, flags);
    }
    if (!found.isNull())
        setTextCursor(found);
    return !found.isNull();
}

/// The window has a search of its own, which would get the key otherwise.
bool HdlView::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride && static_cast<QKeyEvent*>(event)->matches(QKeySequence::Find)) {
        openFindBar();
        event->accept();
        return true;
    }
    return QPlainTextEdit::event(event);
}

} // namespace Velmora
