#include <velmora/workbench/ResponsePage.h>

#include <velmora/catalogue/IPLeaf.h>
#include <velmora/form/ProblemParts.h>
#include <velmora/workbench/CoefficientTools.h>
#include <velmora/workbench/MessageLabel.h>
#include <velmora/workbench/PageMargin.h>
#include <velmora/workbench/PlotView.h>

#include <Brindle/core/Exception.h>
#include <Brindle/files/OutputFiles.h>
#include <Brindle/widgets/FileDialog.h>
#include <Brindle/widgets/Theme.h>

#include <QComboBox>
#include <QDir>
#include <QDoubleSpinBox>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

namespace Velmora {

namespace {

// Pixels.
constexpr int rateWidth = 160;

constexpr double highestRate = 1e12; // Hz

} // namespace

ResponsePage::ResponsePage(const IPLeaf& leaf, const CoefficientTools& tools) : _tools(tools) {
    setObjectName(QStringLiteral("responsePage"));
    connect(&leaf, &IPLeaf::edited, this, &ResponsePage::onEdited);
}

void ResponsePage::createWidgets() {
    _viewCombo = new QComboBox;
    _viewCombo->setObjectName(QStringLiteral("responseView"));
    _viewCombo->setAccessibleName(tr("What is plotted"));
    _viewCombo->addItems(
        {tr("Magnitude"), tr("Phase"), tr("Group delay"), tr("Impulse response"), tr("Step response")});
    _rateSpin = new QDoubleSpinBox;
    _rateSpin->setObjectName(QStringLiteral("responseRate"));
    _rateSpin->setAccessibleName(tr("Sample rate"));
    _rateSpin->setToolTip(tr("The sample rate in Hz; 0 for frequencies in units of it"));
    _rateSpin->setRange(0, highestRate);
    _rateSpin->setDecimals(0);
    _rateSpin->setSuffix(tr(" Hz"));
    _rateSpin->setSpecialValueText(tr("No sample rate"));
    _rateSpin->setKeyboardTracking(false);
    _rateSpin->setMaximumWidth(rateWidth);
    for (QWidget* widget : {static_cast<QWidget*>(_viewCombo), static_cast<QWidget*>(_rateSpin)})
        Brindle::theme.enrich(widget);
    auto* bar = new QHBoxLayout;
    bar->setContentsMargins(pageMargin, 0, pageMargin, 0);
    bar->addWidget(_viewCombo);
    bar->addWidget(_rateSpin);
    bar->addWidget(createSaveButton(tr("Picture..."), tr("Saves the plot as PNG or SVG"), "saveResponseImage",
                                    &ResponsePage::saveImage));
    bar->addWidget(createSaveButton(tr("CSV..."), tr("Saves the numbers of the curves"), "saveResponseNumbers",
                                    &ResponsePage::saveNumbers));
    bar->addStretch(1);
    _figures = new MessageLabel("responseFigures");
    _figures->setContentsMargins(pageMargin, 0, pageMargin, 0);
    _figures->setMinimumWidth(1);
    _plot = new PlotView;
    _plot->setObjectName(QStringLiteral("responsePlot"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, pageMargin / 2, 0, 0);
    layout->setSpacing(pageMargin / 2);
    layout->addLayout(bar);
    layout->addWidget(_figures);
    layout->addWidget(_plot, 1);
    connect(_viewCombo, QOverload<int>::of(&QComboBox::currentIndexChanged), this, &ResponsePage::update);
    connect(_rateSpin, QOverload<double>::of(&QDoubleSpinBox::valueChanged), this, &ResponsePage::update);
}

QPushButton* ResponsePage::createSaveButton(const QString& text, const QString& tip, const char* name,
                                            void (ResponsePage::*onClicked)()) {
    auto* button = new QPushButton(text);
    button->setObjectName(QLatin1String(name));
    button->setToolTip(tip);
    button->setAutoDefault(false);
    connect(button, &QPushButton::clicked, this, onClicked);
    _saveButtons.push_back(button);
    return button;
}

void ResponsePage::showEvent(QShowEvent* event) {
    if (!_plot)
        createWidgets();
    update();
    QWidget::showEvent(event);
}

void ResponsePage::onEdited() {
    if (isVisible())
        update();
}

void ResponsePage::update() {
    QString problem;
    try {
        problem = showResponse();
    } catch (const Brindle::Exception& exception) {
        problem = QString::fromStdString(exception.getMessage());
    }
    if (!problem.isEmpty()) {
        _content = {};
        _plot->show(_content);
        tell(problem, true);
    }
    for (QPushButton* button : _saveButtons)
        button->setEnabled(!_content.curves.empty());
    _saveButtons.front()->setEnabled(_plot->isDrawn() && !_content.curves.empty());
}

QString ResponsePage::showResponse() {
    if (!_tools.getField().isUsed())
        return tr("No response: the coefficients are inputs of the filter.");
    const auto used = _tools.getField().getUsed();
    if (used.empty())
        return tr("No response: there are no coefficients.");
    const DesignedList* designed = _tools.findDesigned(used);
    const double rate = _rateSpin->value();
    _content = getResponsePlot(static_cast<ResponseView>(_viewCombo->currentIndex()), used, designed, rate);
    _plot->show(_content);
    tell(describeResponse(used, designed, rate), false);
    return {};
}

void ResponsePage::saveImage() {
    const QString filename = Brindle::FileDialog::getSaveFileName(
        this, tr("Save the plot"), QDir::currentPath() + "/response.png", tr("Pictures (*.png *.svg)"));
    if (filename.isEmpty())
        return;
    const bool isSvg = QFileInfo(filename).suffix().compare(QLatin1String("svg"), Qt::CaseInsensitive) == 0;
    write(filename, _plot->getPicture(isSvg ? PlotView::Format::Svg : PlotView::Format::Png));
}

void ResponsePage::saveNumbers() {
    const QString filename = Brindle::FileDialog::getSaveFileName(
        this, tr("Save the numbers"), QDir::currentPath() + "/response.csv", QStringLiteral("CSV (*.csv)"));
    if (!filename.isEmpty())
        write(filename, toCsv(_content));
}

void ResponsePage::write(const QString& filename, const QByteArray& content) {
    try {
        Brindle::OutputFiles files(BRINDLE_HERE);
        files.add(filename.toStdString(), content.toStdString());
        files.commit();
        tell(tr("%1 is written.").arg(filename), false);
    } catch (const Brindle::Exception& exception) {
        tell(describe(exception), true);
    }
}

void ResponsePage::tell(const QString& text, bool isProblem) {
    _figures->tell(text, isProblem ? "error" : "text");
    _figures->setToolTip(text);
    _plot->setAccessibleName(_viewCombo->currentText());
    _plot->setAccessibleDescription(text);
}

} // namespace Velmora
