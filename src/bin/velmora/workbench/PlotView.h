#pragma once

#include <velmora/plot/PlotModule.h>

#include <QWidget>

namespace Velmora {

/// A plot, or, without the module that draws it, a text that says what is missing.
class PlotView : public QWidget {
    Q_OBJECT

public:
    enum class Format { Png, Svg };

    /// Loads the module when it is the first.
    explicit PlotView(QWidget* parent = nullptr);

    /// Whether there is a plot.
    bool isDrawn() const { return _plot != nullptr; }
    /// Does nothing without the module.
    void show(const VelmoraPlotContent& content);
    /// A picture of the plot, the content of a file; empty without the module.
    QByteArray getPicture(Format format) const;

private:
    QWidget* _plot = nullptr;
};

} // namespace Velmora
