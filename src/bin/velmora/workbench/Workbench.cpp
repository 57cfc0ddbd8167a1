#include <velmora/workbench/Workbench.h>

#include <velmora/catalogue/IPLeaf.h>

namespace Velmora {

void Workbench::show(IPLeaf* leaf) {
    if (!leaf || !leaf->getForm() || _attached.contains(leaf))
        return;
    _attached.insert(leaf);
    attach(*leaf);
}

void Workbench::attach(IPLeaf&) {}

} // namespace Velmora
