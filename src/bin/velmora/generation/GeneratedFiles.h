#pragma once

#include <QString>

#include <functional>
#include <map>

namespace Velmora {

/// What a generator script returns as files: contents by file name, in ascending order of the names. A content holds
/// the script's bytes one a character (Latin-1); names are text.
using GeneratedFiles = std::map<QString, QString>;

/// Throws Brindle::Fatal "Unable to open file " and its path when a file would leave the directory: its name is
/// absolute or climbs out with "..".
void requireInside(const QString& directory, const GeneratedFiles& files);

/// Hands each file to `write`, with its path below the directory and its content, in ascending order of the names; the
/// directories that its name asks for are made before. Throws what `requireInside` does, before anything is made or
/// written. What `write` throws ends the writing; the files before stay.
void writeGeneratedFiles(const QString& directory, const GeneratedFiles& files,
                         const std::function<void(const QString& path, const QString& content)>& write);

} // namespace Velmora
