#pragma once

#include <QObject>
#include <QSet>

namespace Velmora {

class IPLeaf;

/// What stands around the form of an IP. It is attached to the page of an IP when that is first shown.
///
/// A further tab is a widget of this folder, which `attach` gives to `IPLeaf::addTab`. It takes what the form holds
/// from `IPLeaf::getForm` or `IPLeaf::getConfiguration`, and `IPLeaf::edited` tells when that is another. Since the
/// page of the IP is about to be shown, the constructor is to cost next to nothing: a module, and the widgets that the
/// tab consists of, belong into its first `showEvent`. While the tab is hidden it need not follow the form; `showEvent`
/// catches up.
class Workbench : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    /// The user sees the page of that IP, which is kept, not owned; null when it is none.
    void show(IPLeaf* leaf);

private:
    void attach(IPLeaf& leaf);

    QSet<IPLeaf*> _attached;
};

} // namespace Velmora
