#include <velmora-generate/Commands.h>

#include <velmora-generate/ExitCode.h>

#include <Brindle/core/Console.h>
#include <Brindle/core/Text.h>
#include <Brindle/files/OutputFiles.h>
#include <Brindle/tool/UsageError.h>

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>

namespace GenerateTool {

namespace {

constexpr std::string_view help = R"(Usage: velmora-generate new-ip FOLDER

Makes a new IP to begin with in a folder that does not exist or is empty, named
after it: description file (config), form (form.json), generator script,
templates of a design and its test bench, page, and a configuration. It is a
small design that can be generated and simulated; change it step by step, and
let 'velmora-generate check-ip' look at each.

Example: velmora-generate new-ip ticker
         velmora-generate check-ip ticker --run ticker/example.velmora
)";

constexpr int longestUID = 25; // characters

/// The name of the IP, which stands in texts of several languages.
QString getName(const QString& folder) {
    const QString name = QDir(QDir::cleanPath(QDir(folder).absolutePath())).dirName();
    if (!QRegularExpression(QStringLiteral("\\A[A-Za-z][A-Za-z0-9_-]*\\z")).match(name).hasMatch()) {
        throw Brindle::located(Brindle::UsageError("The name of the folder, " + Brindle::inQuotes(name.toStdString()) +
                                                   ", should be a letter and then letters, digits, '_' and '-'"),
                               BRINDLE_HERE);
    }
    return name;
}

void requireEmpty(const QString& folder) {
    const QFileInfo place(folder);
    const bool isFree = place.isDir() ? QDir(folder).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot)
                                      : !place.exists() && !place.isSymLink();
    if (!isFree) {
        throw Brindle::located(
            Brindle::UsageError(Brindle::inQuotes(folder.toStdString()) + " exists and is no empty folder"),
            BRINDLE_HERE);
    }
}

std::string getContent(const QString& resource, const QString& name) {
    QFile file(resource);
    file.open(QIODevice::ReadOnly);
    const QString uid = QString(name).remove(QRegularExpression(QStringLiteral("[_-]"))).toUpper().left(longestUID);
    return QString::fromUtf8(file.readAll()).replace("@NAME@", name).replace("@UID@", uid).toStdString();
}

int run(const Brindle::CommandLine& commandLine) {
    const QString folder = QString::fromStdString(commandLine.getOperand("The folder of the IP"));
    const QString name = getName(folder);
    requireEmpty(folder);
    const QDir skeleton(QStringLiteral(":/skeleton"));
    Brindle::OutputFiles files(BRINDLE_HERE);
    for (QDirIterator file(skeleton.path(), QDir::Files, QDirIterator::Subdirectories); file.hasNext();) {
        const QString path = folder + "/" + skeleton.relativeFilePath(file.next());
        QDir().mkpath(QFileInfo(path).path());
        files.add(path.toStdString(), getContent(file.filePath(), name), Brindle::Overwrite::No);
    }
    files.commit();
    Brindle::console.print("Made the IP % in " + folder.toStdString(), Brindle::inQuotes(name.toStdString()));
    return ExitCode::Done;
}

} // namespace

const Brindle::Command newIPCommand{"new-ip", "make an IP to begin with", help, {}, run};

} // namespace GenerateTool
