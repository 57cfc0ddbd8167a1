#include <velmora/plot/PlotModule.h>

#include <QPen>

#include <qwt_plot.h>
#include <qwt_plot_canvas.h>
#include <qwt_plot_curve.h>
#include <qwt_plot_grid.h>
#include <qwt_plot_legenditem.h>
#include <qwt_plot_renderer.h>
#include <qwt_plot_zoomer.h>
#include <qwt_symbol.h>
#include <qwt_text.h>

#include <algorithm>
#include <cmath>

namespace {

constexpr double curveWidth = 1.5;      // pixels
constexpr int titleSize = 9;            // points
constexpr int lowHeight = 170;          // pixels, of a plot with little room
constexpr int tickHeight = 40;          // pixels
constexpr QSizeF pictureSize(240, 150); // mm
constexpr int resolution = 120;         // dots an inch
constexpr double room = 0.05;           // of the range, above and below the curves

/// Zooms, and tells the coordinates at the cursor.
class Zoomer : public QwtPlotZoomer {
public:
    Zoomer(QWidget* canvas, const VelmoraPlotColors& colors) : QwtPlotZoomer(canvas), _ground(colors.ground) {
        setRubberBandPen(QPen(colors.accent));
        setTrackerPen(QPen(colors.accent));
        setTrackerMode(AlwaysOn);
        setMousePattern(QwtEventPattern::MouseSelect2, Qt::NoButton);
        setMousePattern(QwtEventPattern::MouseSelect3, Qt::RightButton);
    }

protected:
    QwtText trackerTextF(const QPointF& place) const override {
        QwtText text(QStringLiteral("%1;  %2").arg(place.x(), 0, 'g', 5).arg(place.y(), 0, 'f', 3));
        text.setBackgroundBrush(_ground);
        return text;
    }

private:
    const QColor _ground;
};

class Plot : public QwtPlot {
public:
    Plot(QWidget* parent, const VelmoraPlotColors& colors) : QwtPlot(parent), _colors(colors) {
        auto* plotCanvas = new QwtPlotCanvas(this);
        plotCanvas->setFrameStyle(QFrame::NoFrame);
        plotCanvas->setFocusPolicy(Qt::StrongFocus); // the keys of the zoom
        plotCanvas->setFocusIndicator(QwtPlotCanvas::CanvasFocusIndicator);
        setCanvas(plotCanvas);
        setCanvasBackground(colors.ground);
        QPalette palette;
        palette.setColor(QPalette::WindowText, colors.text);
        palette.setColor(QPalette::Text, colors.text);
        setPalette(palette);
        auto* grid = new QwtPlotGrid;
        grid->setPen(QPen(colors.grid, 0));
        grid->attach(this);
        _legend = new QwtPlotLegendItem;
        _legend->setTextPen(QPen(colors.text));
        _legend->setBackgroundMode(QwtPlotLegendItem::LegendBackground);
        _legend->setBackgroundBrush(colors.ground);
        _legend->setBorderPen(QPen(colors.grid));
        _legend->setAlignment(Qt::AlignTop | Qt::AlignRight);
        _legend->setMaxColumns(1);
        _legend->attach(this);
        _zoomer = new Zoomer(plotCanvas, colors);
    }

    void show(const VelmoraPlotContent& content) {
        _content = content;
        const bool isZoomed = _zoomer->zoomRectIndex() > 0 && _zoomedTitles == content.xTitle + content.yTitle;
        const QRectF zoomed = _zoomer->zoomRect();
        detachItems(QwtPlotItem::Rtti_PlotCurve);
        _zoomedTitles = content.xTitle + content.yTitle;
        for (const VelmoraPlotCurve& curve : content.curves)
            addCurve(curve);
        scale(content);
        fit();
        replot();
        _zoomer->setZoomBase(false);
        if (isZoomed)
            _zoomer->zoom(zoomed);
    }

protected:
    void resizeEvent(QResizeEvent* event) override {
        fit();
        QwtPlot::resizeEvent(event);
    }

private:
    /// What there is no room for is left out.
    void fit() {
        const bool isLow = height() < lowHeight;
        setTitle(xBottom, _content.xTitle);
        setTitle(yLeft, isLow ? QString() : _content.yTitle);
        setAxisMaxMajor(yLeft, std::clamp(height() / tickHeight, 1, 8));
        const auto isNamed = [](const VelmoraPlotCurve& curve) { return !curve.title.isEmpty(); };
        const auto named = std::count_if(_content.curves.begin(), _content.curves.end(), isNamed);
        _legend->setVisible(named > 1 && !isLow);
    }

    void setTitle(int axis, const QString& title) {
        QwtText text(title);
        QFont font(this->font());
        font.setPointSize(titleSize);
        text.setFont(font);
        text.setColor(_colors.text);
        setAxisTitle(axis, text);
        setAxisFont(axis, font);
    }

    /// In pieces, since a curve cannot be interrupted.
    void addCurve(const VelmoraPlotCurve& curve) {
        QVector<QPointF> points;
        bool isFirst = true;
        const auto finish = [&] {
            if (!points.empty())
                addPiece(curve, points, isFirst);
            isFirst = isFirst && points.empty();
            points.clear();
        };
        for (std::size_t index = 0; index < curve.x.size(); ++index) {
            if (std::isfinite(curve.y[index]))
                points += QPointF(curve.x[index], curve.y[index]);
            else
                finish();
        }
        finish();
    }

    void addPiece(const VelmoraPlotCurve& curve, const QVector<QPointF>& points, bool isFirst) {
        auto* piece = new QwtPlotCurve(curve.title);
        const bool isSticks = curve.style == VelmoraPlotCurve::Style::Sticks;
        const bool isDashed = curve.style == VelmoraPlotCurve::Style::Dashes;
        piece->setPen(curve.color, curveWidth, isDashed ? Qt::DashLine : Qt::SolidLine);
        piece->setRenderHint(QwtPlotItem::RenderAntialiased);
        piece->setLegendAttribute(QwtPlotCurve::LegendShowLine);
        piece->setItemAttribute(QwtPlotItem::Legend, isFirst && !curve.title.isEmpty());
        if (isSticks) {
            piece->setStyle(QwtPlotCurve::Sticks);
            piece->setSymbol(new QwtSymbol(QwtSymbol::Ellipse, curve.color, QPen(curve.color), QSize(4, 4)));
        }
        piece->setSamples(points);
        piece->attach(this);
    }

    void scale(const VelmoraPlotContent& content) {
        double left = 1e300;
        double right = -1e300;
        double low = 1e300;
        double high = -1e300;
        for (const VelmoraPlotCurve& curve : content.curves) {
            for (std::size_t index = 0; index < curve.x.size(); ++index) {
                if (!std::isfinite(curve.y[index]))
                    continue;
                left = std::min(left, curve.x[index]);
                right = std::max(right, curve.x[index]);
                low = std::min(low, curve.y[index]);
                high = std::max(high, curve.y[index]);
            }
        }
        if (left > right)
            return;
        low = std::max(low, content.lowestY);
        const double margin = high > low ? room * (high - low) : 1;
        setAxisScale(yLeft, low - margin, high + margin);
        setAxisScale(xBottom, left, right > left ? right : left + 1);
    }

    const VelmoraPlotColors _colors;
    VelmoraPlotContent _content;
    QwtPlotLegendItem* _legend; // the plot's
    QString _zoomedTitles;
    Zoomer* _zoomer;
};

QWidget* create(QWidget* parent, const VelmoraPlotColors& colors) {
    return new Plot(parent, colors);
}

void show(QWidget* plot, const VelmoraPlotContent& content) {
    static_cast<Plot*>(plot)->show(content);
}

void save(QWidget* plot, const QString& filename) {
    QwtPlotRenderer renderer;
    renderer.setDiscardFlag(QwtPlotRenderer::DiscardBackground, false);
    renderer.renderDocument(static_cast<Plot*>(plot), filename, pictureSize, resolution);
}

} // namespace

const VelmoraPlotModule* velmora_plot_module() {
    static const VelmoraPlotModule module{create, show, save};
    return &module;
}
