#pragma once

#include <velmora/rules/IPDescription.h>

#include <QString>
#include <QStringList>

namespace Velmora {

/// What an IP can be found by: its name, its category, and of its description page the title, the keywords
/// (`<meta name="keywords">`) and the summary (`<p class="summary">`).
class SearchTerms {
public:
    /// Reads the beginning of the description page. A page that cannot be read has no words.
    explicit SearchTerms(const IPDescription& description);

    /// True when each word of the text is in the name, begins a word of category, title or keywords, or is one of the
    /// summary, in any letter case.
    bool match(const QString& text) const;

private:
    void readPage(const std::string& filename);

    const QString _name;
    QStringList _topics;  // words of category, title and keywords
    QStringList _summary; // words
};

} // namespace Velmora
