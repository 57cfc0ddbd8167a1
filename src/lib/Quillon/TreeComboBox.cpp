#include <Quillon/TreeComboBox.h>

#include <Brindle/widgets/Theme.h>

#include <QHeaderView>
#include <QTreeView>

namespace Quillon {

TreeComboBox::TreeComboBox(QWidget* parent) : QComboBox(parent) {
    auto* tree = new QTreeView(this);
    tree->setHeaderHidden(true);
    tree->setRootIsDecorated(false);
    tree->setItemsExpandable(false);
    setView(tree);
    Brindle::theme.enrich(this);
}

void TreeComboBox::showPopup() {
    static_cast<QTreeView*>(view())->expandAll();
    QComboBox::showPopup();
}

} // namespace Quillon
