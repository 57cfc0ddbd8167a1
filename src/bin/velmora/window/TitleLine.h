#pragma once

#include <QString>

namespace Velmora {

/// What a page knows of the folio that shows it.
class TitleLine {
public:
    TitleLine(const TitleLine&) = delete;
    TitleLine& operator=(const TitleLine&) = delete;

    /// Shows the title in bold above the page.
    virtual void setTitle(const QString& title) = 0;

protected:
    TitleLine() = default;
    ~TitleLine() = default;
};

} // namespace Velmora
