#pragma once

#include <velmora/workbench/PreviewFeed.h>

#include <Brindle/core/ConsoleObserver.h>

#include <QHash>
#include <QObject>
#include <QString>

#include <string>
#include <vector>

namespace Velmora {

class IPLeaf;
class PreviewPage;
class SummaryLine;

/// What stands around the form of an IP. It is attached to the page of an IP when that is first shown.
///
/// A further tab is a widget of this folder, which `attach` gives to `IPLeaf::addTab`. It takes what the form holds
/// from `IPLeaf::getForm` or `IPLeaf::getConfiguration`, and `IPLeaf::edited` tells when that is another. Since the
/// page of the IP is about to be shown, the constructor is to cost next to nothing: a module, and the widgets that the
/// tab consists of, belong into its first `showEvent`. While the tab is hidden it need not follow the form; `showEvent`
/// catches up.
class Workbench : public QObject, private Brindle::ConsoleObserver {
    Q_OBJECT

public:
    /// `program` is the path of velmora-generate.
    explicit Workbench(QObject* parent, const QString& program = getDefaultProgram());
    /// velmora-generate beside the running program.
    static QString getDefaultProgram();

    /// The user sees the page of that IP, which is kept, not owned; null when it is none.
    void show(IPLeaf* leaf);

private:
    /// What stands around one form; the page of its IP owns it.
    struct Parts {
        PreviewPage* preview;
        SummaryLine* summary;
    };

    void attach(IPLeaf& leaf);
    void onConsoleLine(Brindle::ConsoleLineKind, const std::string&) override {}
    void onConsoleFiles(const std::vector<std::string>& filenames) override;

    const QString _program;
    PreviewFeed _feed;
    IPLeaf* _shown = nullptr; // null when it has no form
    QHash<IPLeaf*, Parts> _parts;
};

} // namespace Velmora
