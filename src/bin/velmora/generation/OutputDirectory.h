#pragma once

#include <velmora/generation/GeneratedFiles.h>

#include <Brindle/core/Location.h>

#include <QString>

namespace Velmora {

/// Throws Brindle::Fatal "Unable to open file " and its path, located at `caller`, when a file would leave the
/// directory (its name is absolute or climbs out with "..").
void requireInside(const QString& directory, const GeneratedFiles& files, const Brindle::Location& caller);

/// Makes the directories that a generated file's name asks for below the directory; returns the file's path.
QString makeDirectories(const QString& directory, const QString& name);

/// Writes generated files into the directory, in ascending order of their names, making the directories that their
/// names ask for. Nothing is made when `requireInside` throws. Throws Brindle::Fatal, located at `caller`, for the
/// first file that cannot be written; those before it stay.
void writeGeneratedFiles(const QString& directory, const GeneratedFiles& files, const Brindle::Location& caller);

} // namespace Velmora
