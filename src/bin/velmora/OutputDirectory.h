#pragma once

#include <velmora/GeneratedFiles.h>

#include <Brindle/Location.h>

#include <QString>

namespace Velmora {

/// Writes generated files into the directory, in ascending order of their names, making the directories that their
/// names ask for. A name that would leave the directory (absolute, or climbing out with "..") is refused before
/// anything is made. Throws Brindle::Fatal, located at `caller`, for the first file that cannot be written; those
/// before it stay.
void writeGeneratedFiles(const QString& directory, const GeneratedFiles& files, const Brindle::Location& caller);

} // namespace Velmora
