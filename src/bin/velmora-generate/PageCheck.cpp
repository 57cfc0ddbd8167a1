#include <velmora-generate/PageCheck.h>

#include <Brindle/core/Console.h>
#include <Brindle/core/Exception.h>
#include <Brindle/core/Text.h>
#include <Brindle/files/RegularFile.h>
#include <Brindle/widgets/Utf8.h>

#include <QFileInfo>
#include <QRegularExpression>
#include <QUrl>

namespace GenerateTool {

namespace {

constexpr std::size_t largestPage = 16UL * 1024 * 1024; // bytes

void tell(const std::string& message, const std::string& filename, const Brindle::Exception::Field& field) {
    Brindle::console.error(Brindle::located(Brindle::Critical(message), BRINDLE_HERE, {{"filename", filename}, field}));
}

/// Files beside the page that it shows or links to.
void checkReferences(const QString& html, const std::string& filename) {
    const QString folder = QFileInfo(QString::fromStdString(filename)).path();
    const QRegularExpression reference(QStringLiteral("\\b(?:src|href)\\s*=\\s*[\"']([^\"']*)[\"']"),
                                       QRegularExpression::CaseInsensitiveOption);
    for (auto match = reference.globalMatch(html); match.hasNext();) {
        const auto found = match.next();
        const QUrl url(found.captured(1));
        if (!url.isRelative() || url.path().isEmpty() || QFileInfo::exists(folder + "/" + url.path()))
            continue;
        const auto line = html.leftRef(found.capturedStart()).count('\n') + 1;
        tell("The page refers to " + Brindle::inQuotes(url.path().toStdString()) + ", which does not exist", filename,
             {"line", std::to_string(line)});
    }
}

} // namespace

void checkPage(const std::string& filename) {
    const auto file = Brindle::RegularFile::read(filename, largestPage);
    if (!file.isRead()) {
        tell("Unable to open the description page", filename, {"reason", file.reason});
        return;
    }
    if (const auto line = Brindle::findLineOutsideUtf8(file.text))
        tell("Line is not UTF-8, save the file in this encoding", filename, {"line", std::to_string(*line)});
    const QString html = QString::fromStdString(file.text);
    if (!html.contains(
            QRegularExpression(QStringLiteral("<title>\\s*[^<\\s]"), QRegularExpression::CaseInsensitiveOption)))
        tell("The page has no title", filename, {"line", "1"});
    checkReferences(html, filename);
}

} // namespace GenerateTool
