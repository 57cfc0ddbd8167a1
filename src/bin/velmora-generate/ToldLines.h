#pragma once

#include <Brindle/core/ConsoleObserver.h>

#include <QStringList>

namespace GenerateTool {

/// What the console tells while it lives, without indents.
class ToldLines : private Brindle::ConsoleObserver {
public:
    ToldLines();

    const QStringList& getErrors() const { return _errors; }
    /// Remarks, and what scripts print.
    const QStringList& getTexts() const { return _texts; }
    /// What was told so far was all of errors, such as the trace of an exception.
    void takeTextsForErrors();

private:
    void onConsoleLine(Brindle::ConsoleLineKind kind, const std::string& line) override;

    QStringList _errors;
    QStringList _texts;
    QStringList _all; // in order
};

} // namespace GenerateTool
