#include <velmora/SearchEdit.h>

#include <Brindle/Theme.h>

#include <QAction>
#include <QKeyEvent>

namespace Velmora {

SearchEdit::SearchEdit(QWidget* parent) : QLineEdit(parent) {
    setClearButtonEnabled(true);
    // the style's own icon does not follow the theme
    findChild<QAction*>(QStringLiteral("_q_qlineeditclearaction"))->setIcon(Brindle::theme.getIcon("erase"));
}

void SearchEdit::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape && !text().isEmpty())
        clear();
    else if (event->key() == Qt::Key_Down)
        Q_EMIT left();
    else
        QLineEdit::keyPressEvent(event);
}

} // namespace Velmora
