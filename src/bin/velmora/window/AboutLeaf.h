#pragma once

#include <QTextBrowser>

namespace Velmora {

class Folio;
class TitleLine;

/// The page that tells what the program is and who made it.
class AboutLeaf : public QTextBrowser {
    Q_OBJECT

public:
    explicit AboutLeaf(Folio* folio);

protected:
    void showEvent(QShowEvent* event) override;

private:
    AboutLeaf(QWidget* parent, TitleLine* titleLine);

    TitleLine* const _titleLine;
};

} // namespace Velmora
