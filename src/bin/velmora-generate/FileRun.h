#pragma once

#include <velmora-generate/ExitCode.h>
#include <velmora-generate/FileReport.h>
#include <velmora-generate/Output.h>

#include <Brindle/tool/CommandLine.h>

#include <QStringList>

#include <functional>
#include <vector>

namespace GenerateTool {

/// The options of a command that works on configuration files.
std::vector<Brindle::Option> getFileOptions();

/// Its operands. Throws Brindle::UsageError when there is none.
QStringList getFilenames(const Brindle::CommandLine& commandLine);

/// Handles one file; false when it failed and the console has told why.
using FileHandler = std::function<bool(const QString& filename, FileReport& report)>;

/// Handles the files one by one. What the handler throws is shown as an error; the other files are handled all the
/// same.
ExitCode runOnFiles(const QStringList& filenames, const Brindle::CommandLine& commandLine, const FileHandler& handle);

/// The same with a process for each of several files, so that none finds what another one left behind, and as many at
/// a time as the option "jobs" says. The output learns what the processes have written.
ExitCode runOnFilesApart(const QStringList& filenames, const Brindle::CommandLine& commandLine,
                         const FileHandler& handle, Output& output);

/// The options of such a command.
std::vector<Brindle::Option> getWritingOptions();

} // namespace GenerateTool
