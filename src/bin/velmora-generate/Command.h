#pragma once

#include <velmora-generate/ExitCode.h>

#include <QCommandLineOption>
#include <QCommandLineParser>
#include <QList>

namespace GenerateTool {

/// One thing that the tool does.
struct Command {
    const char* name;
    const char* summary; ///< Half a line for the list of commands.
    const char* help;    ///< What `--help` shows.
    QList<QCommandLineOption> options;
    /// Does it, on the operands behind the command's name. What it throws is reported by its caller.
    ExitCode (*run)(const QCommandLineParser& commandLine, const QStringList& operands);
};

} // namespace GenerateTool
