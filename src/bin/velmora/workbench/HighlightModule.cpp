#include <velmora/workbench/HighlightModule.h>

#include <KSyntaxHighlighting/Definition>
#include <KSyntaxHighlighting/Format>
#include <KSyntaxHighlighting/Repository>
#include <KSyntaxHighlighting/SyntaxHighlighter>
#include <KSyntaxHighlighting/Theme>

#include <QColor>
#include <QTextCharFormat>
#include <QTextDocument>

namespace {

using KSyntaxHighlighting::Theme;

/// Draws in the colours of the program, which are legible on its grounds.
class Highlighter : public KSyntaxHighlighting::SyntaxHighlighter {
public:
    Highlighter(QTextDocument* document, const VelmoraHighlightColors& colors)
        : SyntaxHighlighter(document),
          _keyword(colors.keyword),
          _type(colors.type),
          _literal(colors.literal),
          _comment(colors.comment) {}

protected:
    void applyFormat(int offset, int length, const KSyntaxHighlighting::Format& format) override {
        if (const QColor color = getColor(format.textStyle()); color.isValid()) {
            QTextCharFormat drawn;
            drawn.setForeground(color);
            setFormat(offset, length, drawn);
        }
    }

private:
    QColor getColor(Theme::TextStyle style) const {
        switch (style) {
        case Theme::Keyword:
        case Theme::ControlFlow:
        case Theme::Preprocessor:
            return _keyword;
        case Theme::DataType:
            return _type;
        case Theme::DecVal:
        case Theme::BaseN:
        case Theme::Float:
        case Theme::Constant:
        case Theme::Char:
        case Theme::String:
            return _literal;
        case Theme::Comment:
            return _comment;
        default:
            return {};
        }
    }

    const QColor _keyword;
    const QColor _type;
    const QColor _literal;
    const QColor _comment;
};

void highlight(QTextDocument& document, const char* filename, const VelmoraHighlightColors& colors) {
    static const KSyntaxHighlighting::Repository repository; // knows all languages, which takes its time
    auto* highlighter = document.findChild<KSyntaxHighlighting::SyntaxHighlighter*>();
    if (!highlighter)
        highlighter = new Highlighter(&document, colors);
    highlighter->setDefinition(repository.definitionForFileName(QString::fromUtf8(filename)));
}

} // namespace

const VelmoraHighlightModule* velmora_highlight_module() {
    static const VelmoraHighlightModule module{highlight};
    return &module;
}
