#include <velmora/IPHandler.h>

#include <velmora/IPLeaf.h>

#include <Brindle/Exception.h>
#include <Brindle/ListCollection.h>

#include <QDir>
#include <QFileInfo>

#include <cstdlib>

namespace Velmora {

namespace {

/// The subdirectories in the order in which the file system returns them.
QStringList subdirectoriesOf(const QString& path) {
    return QDir(path).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Unsorted);
}

} // namespace

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
    const QString root = QString::fromStdString(prefix + "/share/velmora");
    for (const QString& provider : subdirectoriesOf(root)) {
        const QString providerPath = root + "/" + provider;
        for (const QString& ip : subdirectoriesOf(providerPath)) {
            const QString descriptionFilename = providerPath + "/" + ip + "/config";
            if (QFileInfo::exists(descriptionFilename))
                attach(new IPLeaf(descriptionFilename.toStdString()));
        }
    }
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
