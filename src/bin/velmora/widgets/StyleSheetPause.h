#pragma once

#include <QApplication>
#include <QString>

namespace Velmora {

/// Takes the application's style sheet off while many widgets are built: with it, each change of a parent styles the
/// whole branch anew. At the end every widget is styled once.
class StyleSheetPause {
public:
    StyleSheetPause() : _styleSheet(qApp->styleSheet()) { qApp->setStyleSheet(QString()); }
    StyleSheetPause(const StyleSheetPause&) = delete;
    StyleSheetPause& operator=(const StyleSheetPause&) = delete;
    ~StyleSheetPause() { qApp->setStyleSheet(_styleSheet); }

private:
    const QString _styleSheet;
};

} // namespace Velmora
