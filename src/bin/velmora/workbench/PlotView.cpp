#include <velmora/workbench/PlotView.h>

#include <Brindle/core/Exception.h>
#include <Brindle/core/Module.h>
#include <Brindle/widgets/Theme.h>

#include <QFile>
#include <QLabel>
#include <QTemporaryDir>
#include <QVBoxLayout>

namespace Velmora {

namespace {

constexpr int smallestHeight = 120; // pixels

/// Throws Brindle::Critical when the module is missing.
const VelmoraPlotModule& getModule() {
    static const VelmoraPlotModule* const module =
        Brindle::Module("velmora_plot").find<const VelmoraPlotModule*()>("velmora_plot_module")();
    return *module;
}

} // namespace

PlotView::PlotView(QWidget* parent) : QWidget(parent) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    setMinimumHeight(smallestHeight);
    const auto color = [](const char* name) { return Brindle::theme.getColor(name); };
    try {
        _plot = getModule().create(this, {color("surface"), color("text"), color("border"), color("accent")});
        layout->addWidget(_plot);
    } catch (const Brindle::Exception& exception) {
        auto* label = new QLabel(tr("No plot: the module velmora_plot of the installation is missing."));
        label->setObjectName(QStringLiteral("missingPlot"));
        label->setToolTip(QString::fromStdString(exception.getMessage()));
        label->setWordWrap(true);
        layout->addWidget(label, 0, Qt::AlignTop);
    }
}

void PlotView::show(const VelmoraPlotContent& content) {
    if (!_plot)
        return;
    _plot->setVisible(!content.curves.empty()); // rather nothing than axes of nothing
    getModule().show(_plot, content);
}

QByteArray PlotView::getPicture(Format format) const {
    const QTemporaryDir directory; // the module writes files alone
    QFile file(directory.filePath(format == Format::Svg ? QStringLiteral("plot.svg") : QStringLiteral("plot.png")));
    if (_plot)
        getModule().save(_plot, file.fileName());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace Velmora
