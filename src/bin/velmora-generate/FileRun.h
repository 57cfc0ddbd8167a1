#pragma once

#include <velmora-generate/ExitCode.h>
#include <velmora-generate/FileReport.h>

#include <QCommandLineParser>
#include <QList>
#include <QStringList>

#include <functional>

namespace GenerateTool {

/// The options of a command that works on configuration files.
QList<QCommandLineOption> getFileOptions();

/// Handles one file; false when it failed and the console has told why.
using FileHandler = std::function<bool(const QString& filename, FileReport& report)>;

/// Handles the files one by one. What the handler throws is shown as an error; the other files are handled all the
/// same.
ExitCode runOnFiles(const QStringList& filenames, const QCommandLineParser& commandLine, const FileHandler& handle);

} // namespace GenerateTool
