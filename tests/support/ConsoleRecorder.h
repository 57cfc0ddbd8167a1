#pragma once

#include <Brindle/core/Build.h>
#include <Brindle/core/Console.h>

#include <QRegularExpression>
#include <QString>
#include <QStringList>

#include <utility>

/// Keeps what the console shows from its construction on, without the locations of a debugging build: errors as "E:
/// text", remarks as "R: text", the rest as it is.
class ConsoleRecorder : public Brindle::ConsoleObserver {
public:
    ConsoleRecorder() { Brindle::console.attach(*this); }

    const QStringList& lines() const { return _lines; }
    QStringList errors() const { return _lines.filter(QRegularExpression(QStringLiteral("^E: "))); }
    /// What was shown since the last call.
    QStringList take() { return std::exchange(_lines, {}); }

private:
    void onConsoleLine(Brindle::ConsoleLineKind kind, const std::string& line) override {
        const char* mark = kind == Brindle::ConsoleLineKind::Error    ? "E: "
                           : kind == Brindle::ConsoleLineKind::Remark ? "R: "
                                                                      : "";
        QString text = QString::fromStdString(line);
        if (Brindle::isDebug()) // errors tell their location there
            text.remove(QRegularExpression(QStringLiteral(" \\[[^\\[\\]]*, line \\d+\\]$")));
        _lines += mark + text;
    }

    QStringList _lines;
};
