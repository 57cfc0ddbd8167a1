#pragma once

#include <QTextBrowser>

namespace Velmora {

class Folio;

/// The page that tells what the program is and who made it.
class AboutLeaf : public QTextBrowser {
    Q_OBJECT

public:
    explicit AboutLeaf(Folio* folio);

protected:
    void showEvent(QShowEvent* event) override;

private:
    Folio* const _folio; // the page's parent at construction
};

} // namespace Velmora
