#pragma once

#include <list>
#include <string>
#include <string_view>

namespace Velmora {

/// What the description file of one IP says.
struct IPDescription {
    std::string name;     ///< Display name, may contain blanks.
    std::string category; ///< Path of the IP in the browser's tree, components separated by "/".
    std::string uid;      ///< Unique identifier, one word of at most 25 characters; may be empty without a script.
    std::string company;  ///< Provider, one word.
    std::list<std::string> variants; ///< Device families for which the IP exists, in file order, duplicates kept.
    std::string scriptFilename;      ///< Absolute path of the generator script; empty when the IP has none.
    std::string htmlFilename;        ///< Absolute path of the description page; empty when the IP has none.
    std::string formFilename;        ///< Absolute path of the description of its form, a file that need not exist.
};

/// An IP as messages name it: 'Systolic' of Orvane.
std::string getIPLabel(const std::string& name, const std::string& company);

/// Reads the content of a description file: one keyword with its values a line, neither comments nor blank lines.
/// `filename` is the file's path, against whose directory relative paths are resolved. Throws Brindle::Critical with
/// the field "filename", and "line" when there is one, for the first line that is wrong
/// (that holds a NUL or begins with a byte order mark, too) or the first mandatory entry that is missing.
IPDescription parseIPDescription(std::string_view content, const std::string& filename);

} // namespace Velmora
