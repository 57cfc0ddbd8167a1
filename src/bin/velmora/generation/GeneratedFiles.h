#pragma once

#include <QString>

#include <map>

namespace Velmora {

/// What a generator script returns as files: contents by file name, in ascending order of the names. A content holds
/// the script's bytes one a character (Latin-1); names are text.
using GeneratedFiles = std::map<QString, QString>;

} // namespace Velmora
