#include <velmora/workbench/Workbench.h>

#include <velmora/catalogue/IPLeaf.h>
#include <velmora/workbench/CoefficientTools.h>
#include <velmora/workbench/PreviewPage.h>
#include <velmora/workbench/ResponsePage.h>
#include <velmora/workbench/SummaryLine.h>

#include <Brindle/core/Console.h>

#include <QCoreApplication>

namespace Velmora {

Workbench::Workbench(QObject* parent, const QString& program) : QObject(parent), _program(program), _feed(program) {
    Brindle::console.attach(*this);
    connect(&_feed, &PreviewFeed::found, this, [this](IPLeaf* leaf, const Preview& preview) {
        const Parts& parts = _parts[leaf];
        parts.summary->setPreview(preview);
        parts.preview->setPreview(preview);
    });
}

QString Workbench::getDefaultProgram() {
    return QCoreApplication::applicationDirPath() + QStringLiteral("/velmora-generate");
}

void Workbench::show(IPLeaf* leaf) {
    _shown = leaf && leaf->getForm() ? leaf : nullptr;
    if (_shown && !_parts.contains(_shown))
        attach(*_shown);
    _feed.follow(_shown);
}

void Workbench::attach(IPLeaf& leaf) {
    const Parts parts{new PreviewPage(leaf, _feed), new SummaryLine(leaf)};
    leaf.addTab(tr("Preview"), QKeySequence(QStringLiteral("Alt+P")), parts.preview);
    leaf.setSummary(parts.summary);
    if (CoefficientField::isIn(leaf)) {
        const auto* tools = new CoefficientTools(leaf, _program);
        leaf.addTab(tr("Response"), QKeySequence(QStringLiteral("Alt+E")), new ResponsePage(leaf, *tools));
    }
    _parts[&leaf] = parts;
}

/// They are those of the form that is shown, since its Generate button was pressed.
void Workbench::onConsoleFiles(const std::vector<std::string>& filenames) {
    if (_shown)
        _parts[_shown].summary->setFiles(filenames);
}

} // namespace Velmora
