#pragma once

#include <velmora/catalogue/IPLeaves.h>

#include <Quillon/Owned.h>

#include <QPointer>

#include <list>
#include <memory>
#include <string>
#include <vector>

namespace Velmora {

class IPLeaf;
class MainWindow;

/// The catalogue: at its creation it finds every description file below the installation prefix and keeps one leaf for
/// each, in the order in which they are found.
class IPHandler : public Quillon::Object {
public:
    /// Makes the one handler of the process. Throws Brindle::FactoryFailed for a null window, std::logic_error when the
    /// variable ORVANE_PREFIX is not set, and what the construction of a leaf throws.
    static Quillon::Owned<IPHandler> create(MainWindow* mainWindow);

    /// One step of `create`, which is the way to make a handler. The window is kept, not owned.
    explicit IPHandler(MainWindow* mainWindow);
    ~IPHandler() override;

    static void preCreate(MainWindow* mainWindow);
    void postCreate(MainWindow* mainWindow);
    void preDestroy() override;

    /// A view of the catalogue, valid as long as the handler lives.
    IPLeaves getIPLeaves() const;
    /// Appends a leaf, which the handler owns until it gets a parent; a null leaf is ignored.
    void attach(IPLeaf* leaf);

    std::string getAlias() const override { return "IPHandler"; }

protected:
    std::string _getLabel() const override;
    std::unique_ptr<Quillon::Record> _getRecord() const override;

private:
    MainWindow* const _mainWindow;
    std::list<IPLeaf*> _leaves;
    std::vector<QPointer<IPLeaf>> _guards; ///< To delete those that never get a parent.
};

/// The one live handler; null when there is none.
extern IPHandler* ipHandler;

} // namespace Velmora
