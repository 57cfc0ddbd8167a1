#include <velmora/catalogue/IPHandler.h>

#include <velmora/catalogue/DescriptionFile.h>
#include <velmora/catalogue/IPLeaf.h>

#include <Brindle/collections/ListCollection.h>
#include <Brindle/core/Exception.h>

#include <cstdlib>

namespace Velmora {

IPHandler* ipHandler = nullptr;

Quillon::Owned<IPHandler> IPHandler::create(MainWindow* mainWindow) {
    return Quillon::create<IPHandler>(mainWindow);
}

IPHandler::IPHandler(MainWindow* mainWindow) : _mainWindow(mainWindow) {}

IPHandler::~IPHandler() {
    for (const QPointer<IPLeaf>& leaf : _guards) {
        if (leaf && !leaf->parent())
            delete leaf;
    }
}

void IPHandler::preCreate(MainWindow* mainWindow) {
    Object::preCreate();
    if (!mainWindow)
        throw Brindle::located(Brindle::FactoryFailed("Null mainWindow"), BRINDLE_HERE);
}

void IPHandler::postCreate(MainWindow*) {
    ipHandler = this;
    // Without the variable the program cannot work: a null text throws, which the analyzer takes for undefined.
    const std::string prefix = std::getenv("ORVANE_PREFIX"); // NOLINT(clang-analyzer-cplusplus.StringChecker)
    for (const std::string& descriptionFilename : findDescriptionFiles(prefix))
        attach(new IPLeaf(descriptionFilename, IPLeaf::Content::WhenNeeded));
    Object::postCreate();
}

void IPHandler::preDestroy() {
    Object::preDestroy();
    ipHandler = nullptr;
}

IPLeaves IPHandler::getIPLeaves() const {
    return IPLeaves(Brindle::ListCollection<IPLeaf*>(_leaves));
}

void IPHandler::attach(IPLeaf* leaf) {
    if (!leaf)
        return;
    _leaves.push_back(leaf);
    _guards.emplace_back(leaf);
}

std::string IPHandler::_getLabel() const {
    return getUpdatedLabel(Object::_getLabel(), "IPHandler");
}

std::unique_ptr<Quillon::Record> IPHandler::_getRecord() const {
    return isReportable() ? std::make_unique<Quillon::Record>("IPHandler") : nullptr;
}

} // namespace Velmora
