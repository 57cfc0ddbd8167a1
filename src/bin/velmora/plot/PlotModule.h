#pragma once

#include <QColor>
#include <QString>

#include <vector>

QT_BEGIN_NAMESPACE
class QWidget;
QT_END_NAMESPACE

/// A line of a plot. What is not a number interrupts it.
struct VelmoraPlotCurve {
    enum class Style { Line, Dashes, Sticks };

    QString title; ///< In the legend, which stands where two curves have one; empty for none.
    std::vector<double> x;
    std::vector<double> y;
    QColor color;
    Style style = Style::Line;
};

/// What a plot shows.
struct VelmoraPlotContent {
    QString xTitle; ///< With the unit.
    QString yTitle;
    double lowestY = -1e300; ///< Where the axis ends at first, however low the curves go.
    std::vector<VelmoraPlotCurve> curves;
};

/// What a plot is drawn in.
struct VelmoraPlotColors {
    QColor ground;
    QColor text;
    QColor grid;
    QColor accent; ///< Of the rectangle that is zoomed into and of the read-out.
};

/// What the module of plots does, so that nothing else depends on the library that draws them. A rectangle drawn with
/// the mouse is zoomed into; the right button takes a step back. The coordinates at the cursor are read out.
struct VelmoraPlotModule {
    /// A new plot without curves, owned by the parent.
    QWidget* (*create)(QWidget* parent, const VelmoraPlotColors& colors);
    /// Shows this from now on. What was zoomed into stays as long as the axes have the same titles.
    void (*show)(QWidget* plot, const VelmoraPlotContent& content);
    /// Writes a picture as it is shown, SVG or PNG by the extension.
    void (*save)(QWidget* plot, const QString& filename);
};

/// The function of the module that gives it.
extern "C" const VelmoraPlotModule* velmora_plot_module();
