#pragma once

#include <QString>

#include <optional>
#include <string>

namespace GenerateTool {

/// The generator script of an author's folder and what it uses as one text, as it is sealed: support files, the
/// dictionaries TEMPLATES and SHARED_TEMPLATES (name below the folder `templates` of script and support to content),
/// and the script. A dictionary whose folder does not exist is left out. Throws Brindle::Critical with the field
/// "filename", and "line" where there is one, for a file that cannot be read or holds something else than ASCII text.
std::string joinScript(const std::string& scriptFilename, const std::optional<QString>& supportFolder);

} // namespace GenerateTool
