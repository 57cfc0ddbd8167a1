#include <velmora/catalogue/SearchTerms.h>

#include <Brindle/files/RegularFile.h>

#include <QRegularExpression>

#include <algorithm>

namespace Velmora {

namespace {

constexpr std::size_t longestHead = 16UL * 1024; // bytes of a page, up to its summary

QStringList wordsOf(const QString& text) {
    static const QRegularExpression gap(QStringLiteral("[^\\w-]+"), QRegularExpression::UseUnicodePropertiesOption);
    return text.toLower().split(gap, Qt::SkipEmptyParts);
}

QString captureIn(const QString& html, const char* pattern) {
    const QRegularExpression expression(QLatin1String(pattern), QRegularExpression::CaseInsensitiveOption |
                                                                    QRegularExpression::DotMatchesEverythingOption);
    return expression.match(html).captured(1);
}

} // namespace

SearchTerms::SearchTerms(const IPDescription& description)
    : _name(QString::fromStdString(description.name)), _topics(wordsOf(QString::fromStdString(description.category))) {
    if (!description.htmlFilename.empty())
        readPage(description.htmlFilename);
}

void SearchTerms::readPage(const std::string& filename) {
    const QString html = QString::fromStdString(Brindle::RegularFile::read(filename, longestHead).text);
    _topics += wordsOf(captureIn(html, "<title>(.*?)</title>"));
    _topics += wordsOf(captureIn(html, "<meta\\s+name=\"keywords\"\\s+content=\"([^\"]*)\""));
    _summary = wordsOf(captureIn(html, "<p\\s+class=\"summary\">(.*?)</p>"));
}

bool SearchTerms::match(const QString& text) const {
    const QStringList wanted = text.toLower().split(' ', Qt::SkipEmptyParts);
    return std::ranges::all_of(wanted, [this](const QString& word) {
        return _name.contains(word, Qt::CaseInsensitive) || _summary.contains(word) ||
               std::ranges::any_of(_topics, [&word](const QString& topic) { return topic.startsWith(word); });
    });
}

} // namespace Velmora
