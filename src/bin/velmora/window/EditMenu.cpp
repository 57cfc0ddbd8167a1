#include <velmora/window/EditMenu.h>

#include <velmora/catalogue/IPLeaf.h>
#include <velmora/form/Form.h>
#include <velmora/window/Folio.h>

namespace Velmora {

EditMenu::EditMenu(Folio* folio, QWidget* parent) : QMenu(tr("&Edit"), parent), _folio(folio) {
    setObjectName(QStringLiteral("editMenu"));
    QAction* undoAction = _histories.createUndoAction(this, tr("&Undo"));
    undoAction->setObjectName(QStringLiteral("undo"));
    undoAction->setShortcut(QKeySequence::Undo);
    addAction(undoAction);
    QAction* redoAction = _histories.createRedoAction(this, tr("&Redo"));
    redoAction->setObjectName(QStringLiteral("redo"));
    redoAction->setShortcut(QKeySequence::Redo);
    addAction(redoAction);
    connect(folio, &Folio::shownIPChanged, this, &EditMenu::followShownIP);
    followShownIP();
}

void EditMenu::followShownIP() {
    const IPLeaf* leaf = _folio->getShownIP();
    QUndoStack* history = leaf && leaf->getForm() ? &leaf->getForm()->getHistory() : nullptr;
    if (history)
        _histories.addStack(history);
    _histories.setActiveStack(history);
}

} // namespace Velmora
