#pragma once

#include <velmora/plot/PlotModule.h>
#include <velmora/workbench/DesignedList.h>

#include <QByteArray>
#include <QString>

#include <vector>

namespace Velmora {

class PlotView;

/// What can be seen of coefficients.
enum class ResponseView { Magnitude, Phase, GroupDelay, Impulse, Step };

/// The plot of the coefficients as the hardware uses them, at least one. `designed` may be null; what it knows is drawn
/// over them. `rate` is the sample rate in Hz, 0 when frequencies are in units of it.
VelmoraPlotContent getResponsePlot(ResponseView view, const std::vector<double>& used, const DesignedList* designed,
                                   double rate);

/// The figures in words, also for those who do not see the plot.
QString describeResponse(const std::vector<double>& used, const DesignedList* designed, double rate);

/// Plots the magnitude of a list, which may be empty, and describes the plot in words.
void showMagnitude(PlotView& plot, const DesignedList& list);

/// The curves as columns of a CSV file: the abscissa, then each curve that has a title.
QByteArray toCsv(const VelmoraPlotContent& content);

} // namespace Velmora
