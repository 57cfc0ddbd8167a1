#pragma once

#include <velmora-generate/FileReport.h>
#include <velmora-generate/Output.h>

#include <velmora/generation/Generation.h>

namespace GenerateTool {

/// One generation of a configuration file with the console lines of the window. The files are written when the script
/// showed no error; false when they are not.
bool generate(Velmora::Generation generation, const QString& filename, Output& output, FileReport& report);

} // namespace GenerateTool
