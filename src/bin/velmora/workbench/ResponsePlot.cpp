#include <velmora/workbench/ResponsePlot.h>

#include <velmora/signal/FrequencyResponse.h>
#include <velmora/signal/NumberText.h>
#include <velmora/workbench/PlotView.h>

#include <Brindle/widgets/Theme.h>

#include <QObject>
#include <QStringList>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace Velmora {

namespace {

using Curve = VelmoraPlotCurve;

constexpr int pointCount = 2048;
constexpr double lowestMagnitude = -140; // dB, that the axis shows at first
constexpr double roomBelow = 20;         // dB, below what was asked for

bool isOfTime(ResponseView view) {
    return view == ResponseView::Impulse || view == ResponseView::Step;
}

/// Without the jumps of a turn.
std::vector<double> unwrap(std::vector<double> phase) {
    const double turn = 2 * std::numbers::pi;
    double offset = 0;
    for (std::size_t index = 1; index < phase.size(); ++index) {
        const double step = phase[index] + offset - phase[index - 1];
        offset -= turn * std::round(step / turn);
        phase[index] += offset;
    }
    return phase;
}

std::vector<double> getFrequencyValues(ResponseView view, const FrequencyResponse& response) {
    if (view == ResponseView::Phase)
        return unwrap(response.phase);
    if (view == ResponseView::GroupDelay)
        return response.groupDelay;
    std::vector<double> magnitude = response.magnitude;
    std::ranges::replace(magnitude, noMagnitude, std::numeric_limits<double>::quiet_NaN());
    return magnitude;
}

Curve getCurve(ResponseView view, const std::vector<double>& coefficients, double scale) {
    Curve curve;
    if (isOfTime(view)) {
        curve.y = view == ResponseView::Step ? getStepResponse(coefficients) : coefficients;
        for (std::size_t index = 0; index < curve.y.size(); ++index)
            curve.x.push_back(static_cast<double>(index));
        return curve;
    }
    const FrequencyResponse response = getFrequencyResponse(coefficients, pointCount);
    curve.y = getFrequencyValues(view, response);
    for (const double frequency : response.frequency)
        curve.x.push_back(frequency * scale);
    return curve;
}

/// The ripple that is allowed lies below the largest magnitude.
void addLimits(const DesignedList& designed, double scale, std::vector<Curve>& curves) {
    Curve limit;
    limit.title = QObject::tr("Limit");
    limit.color = Brindle::theme.getColor("error");
    for (const Band& band : designed.bands) {
        const auto& value = band.isPass ? designed.ripple : designed.attenuation;
        if (!value)
            continue;
        limit.x.insert(limit.x.end(), {band.begin * scale, band.end * scale, band.end * scale});
        limit.y.insert(limit.y.end(), {-*value, -*value, std::numeric_limits<double>::quiet_NaN()});
    }
    if (!limit.x.empty())
        curves.push_back(limit);
}

QString getOrdinate(ResponseView view) {
    switch (view) {
    case ResponseView::Magnitude:
        return QObject::tr("Magnitude (dB)");
    case ResponseView::Phase:
        return QObject::tr("Phase (radians)");
    case ResponseView::GroupDelay:
        return QObject::tr("Group delay (samples)");
    case ResponseView::Impulse:
        return QObject::tr("Impulse response (units)");
    default:
        return QObject::tr("Step response (units)");
    }
}

double getScale(double rate) {
    return rate > 0 ? rate : 1;
}

} // namespace

VelmoraPlotContent getResponsePlot(ResponseView view, const std::vector<double>& used, const DesignedList* designed,
                                   double rate) {
    VelmoraPlotContent content;
    const QString frequency = rate > 0 ? QObject::tr("Frequency (Hz)") : QObject::tr("Frequency (of the sample rate)");
    content.xTitle = isOfTime(view) ? QObject::tr("Time (samples)") : frequency;
    content.yTitle = getOrdinate(view);
    Curve rounded = getCurve(view, used, getScale(rate));
    rounded.title = QObject::tr("Rounded");
    rounded.color = Brindle::theme.getColor("accent");
    if (view == ResponseView::Impulse)
        rounded.style = Curve::Style::Sticks;
    content.curves.push_back(std::move(rounded));
    if (designed) {
        Curve ideal = getCurve(view, designed->ideal, getScale(rate));
        ideal.title = QObject::tr("Unrounded");
        ideal.color = Brindle::theme.getColor("remark");
        ideal.style = Curve::Style::Dashes;
        content.curves.push_back(std::move(ideal));
    }
    if (view == ResponseView::Magnitude) {
        content.lowestY = lowestMagnitude;
        if (designed && designed->attenuation)
            content.lowestY = std::min(lowestMagnitude, -*designed->attenuation - roomBelow);
        if (designed)
            addLimits(*designed, getScale(rate), content.curves);
    }
    return content;
}

QString describeResponse(const std::vector<double>& used, const DesignedList* designed, double rate) {
    const FrequencyResponse response = getFrequencyResponse(used, pointCount);
    const auto peak = std::ranges::max_element(response.magnitude) - response.magnitude.begin();
    const double frequency = response.frequency[static_cast<std::size_t>(peak)] * getScale(rate);
    QString text = QObject::tr("%1 taps, peak at %2").arg(used.size()).arg(frequency, 0, 'g', 4);
    text += rate > 0 ? QObject::tr(" Hz") : QObject::tr(" of the sample rate");
    if (designed && !designed->bands.empty()) {
        const BandFigures figures = getBandFigures(used, designed->bands);
        text += QObject::tr(", ripple %1 dB, attenuation %2 dB")
                    .arg(figures.ripple, 0, 'f', 3)
                    .arg(figures.attenuation, 0, 'f', 2);
    }
    return text;
}

void showMagnitude(PlotView& plot, const DesignedList& list) {
    if (list.coefficients.empty()) {
        plot.show({});
        return;
    }
    const std::vector<double> used(list.coefficients.begin(), list.coefficients.end());
    plot.show(getResponsePlot(ResponseView::Magnitude, used, &list, 0));
    plot.setAccessibleName(QObject::tr("Magnitude"));
    plot.setAccessibleDescription(describeResponse(used, &list, 0));
}

QByteArray toCsv(const VelmoraPlotContent& content) {
    const auto& x = content.curves.front().x;
    QStringList titles{content.xTitle};
    std::vector<const Curve*> columns;
    for (const Curve& curve : content.curves) {
        if (curve.x != x) // limits have abscissas of their own
            continue;
        columns.push_back(&curve);
        titles += content.yTitle + ": " + curve.title;
    }
    QString text = titles.join(QStringLiteral(",")) + "\n";
    for (std::size_t row = 0; row < x.size(); ++row) {
        text += QString::fromStdString(getRealText(x[row]));
        for (const Curve* column : columns) {
            const double value = column->y[row];
            text += "," + (std::isfinite(value) ? QString::fromStdString(getRealText(value)) : QString());
        }
        text += "\n";
    }
    return text.toUtf8();
}

} // namespace Velmora
