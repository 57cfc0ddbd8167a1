#pragma once

#include <QApplication>
#include <QString>

#include <utility>

namespace Velmora {

/// Takes the application's style sheet off while many widgets are built: with it, each change of a parent styles the
/// whole branch anew. At the end every widget is styled once.
class StyleSheetPause {
public:
    StyleSheetPause() : _styleSheet(qApp->styleSheet()) {
        qApp->setStyleSheet(QString());
        _isActive = true;
    }
    StyleSheetPause(const StyleSheetPause&) = delete;
    StyleSheetPause& operator=(const StyleSheetPause&) = delete;
    ~StyleSheetPause() {
        _isActive = false;
        qApp->setStyleSheet(_styleSheet);
    }

    /// True while there is one: what is measured now would have to be measured again.
    static bool isActive() { return _isActive; }

private:
    static inline bool _isActive = false;
    const QString _styleSheet;
};

} // namespace Velmora
