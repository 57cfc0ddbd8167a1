#include <velmora/widgets/SearchEdit.h>

#include <Brindle/widgets/Theme.h>

#include <QAction>
#include <QKeyEvent>

namespace Velmora {

SearchEdit::SearchEdit(QWidget* parent) : QLineEdit(parent) {
    // not Qt's own clear button: its icon does not follow the theme, and is looked for in all icon themes at each start
    QAction* erase = addAction(Brindle::theme.getIcon("erase"), TrailingPosition);
    erase->setToolTip(tr("Clear"));
    erase->setVisible(false);
    connect(erase, &QAction::triggered, this, &QLineEdit::clear);
    connect(this, &QLineEdit::textChanged, erase, [erase](const QString& text) { erase->setVisible(!text.isEmpty()); });
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
