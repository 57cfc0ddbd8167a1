#include <velmora-generate/ToldLines.h>

#include <Brindle/core/Console.h>

namespace GenerateTool {

ToldLines::ToldLines() {
    Brindle::console.attach(*this);
}

void ToldLines::takeTextsForErrors() {
    _errors = _all;
    _texts.clear();
}

void ToldLines::onConsoleLine(Brindle::ConsoleLineKind kind, const std::string& line) {
    const QString text = QString::fromStdString(line).trimmed();
    _all += text;
    (kind == Brindle::ConsoleLineKind::Error ? _errors : _texts) += text;
}

} // namespace GenerateTool
