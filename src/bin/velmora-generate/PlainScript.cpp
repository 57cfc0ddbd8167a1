#include <velmora-generate/PlainScript.h>

#include <Brindle/core/Exception.h>
#include <Brindle/core/Text.h>
#include <Brindle/files/RegularFile.h>

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>

#include <algorithm>

namespace GenerateTool {

namespace {

constexpr std::size_t largestFile = 16UL * 1024 * 1024; // bytes

[[noreturn]] void refuse(const std::string& message, const std::string& filename, const std::string& name,
                         const std::string& value) {
    throw Brindle::located(Brindle::Critical(message), BRINDLE_HERE, {{"filename", filename}, {name, value}});
}

/// Ends with a line end.
std::string readPart(const std::string& filename) {
    auto file = Brindle::RegularFile::read(filename, largestFile);
    if (!file.isRead())
        refuse("Unable to open file", filename, "reason", file.reason);
    const auto isForeign = [](char c) { return c < 0 || (Brindle::isControl(c) && c != '\n' && c != '\t'); };
    if (const auto foreign = std::ranges::find_if(file.text, isForeign); foreign != file.text.end()) {
        const auto line = 1 + std::count(file.text.begin(), foreign, '\n');
        refuse("Only ASCII text can be part of a generator script", filename, "line", std::to_string(line));
    }
    if (!file.text.ends_with('\n'))
        file.text += '\n';
    return std::move(file.text);
}

std::string toPython(const std::string& text) {
    std::string literal = "'";
    for (const char c : text) {
        if (c == '\n')
            literal += "\\n";
        else if (c == '\t')
            literal += "\\t";
        else
            literal.append(c == '\'' || c == '\\' ? "\\" : "") += c;
    }
    return literal + "'";
}

QStringList findFiles(const QString& folder) {
    QStringList names;
    for (QDirIterator file(folder, QDir::Files, QDirIterator::Subdirectories); file.hasNext();)
        names += QDir(folder).relativeFilePath(file.next());
    names.sort();
    return names;
}

/// On one line, so that the lines of the script are easily found.
std::string getTemplates(const std::string& dictionary, const QString& folder) {
    if (!QFileInfo(folder).isDir())
        return {};
    std::string text = dictionary + " = {";
    for (const QString& name : findFiles(folder))
        text += toPython(name.toStdString()) + ": " + toPython(readPart((folder + "/" + name).toStdString())) + ", ";
    return text + "}\n";
}

std::string getSupport(const QString& folder) {
    if (!QFileInfo(folder).isDir())
        refuse("Unable to open the folder of support files", folder.toStdString(), "reason", "It is no folder");
    std::string text;
    for (const QString& name : QDir(folder).entryList({"*.py"}, QDir::Files, QDir::Name))
        text += readPart((folder + "/" + name).toStdString()) + "\n\n";
    return text;
}

} // namespace

std::string joinScript(const std::string& scriptFilename, const std::optional<QString>& supportFolder) {
    const QString folder = QFileInfo(QString::fromStdString(scriptFilename)).path();
    const std::string support = supportFolder ? getSupport(*supportFolder) : std::string();
    const std::string shared =
        supportFolder ? getTemplates("SHARED_TEMPLATES", *supportFolder + "/templates") : std::string();
    return support + getTemplates("TEMPLATES", folder + "/templates") + shared + readPart(scriptFilename);
}

} // namespace GenerateTool
