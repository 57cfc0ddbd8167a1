#include <velmora/workbench/DesignDialog.h>

#include <velmora/signal/NumberText.h>
#include <velmora/workbench/MessageLabel.h>
#include <velmora/workbench/PlotView.h>
#include <velmora/workbench/ResponsePlot.h>

#include <Brindle/widgets/Theme.h>

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSettings>
#include <QVBoxLayout>

namespace Velmora {

namespace {

constexpr int pause = 200; // ms

// Pixels.
constexpr int editWidth = 200;
constexpr int plotWidth = 420;

const QString settingsGroup = QStringLiteral("CoefficientDesign");
const QString rootRaisedCosine = QStringLiteral("rootraisedcosine");

std::vector<double> toNumbers(const QJsonValue& array) {
    std::vector<double> numbers;
    for (const QJsonValue value : array.toArray())
        numbers.push_back(value.toDouble());
    return numbers;
}

std::optional<double> findNumber(const std::vector<double>& numbers) {
    return numbers.empty() ? std::nullopt : std::optional(numbers.front());
}

/// What the program says, without its name and where to read on.
QString getReason(const QByteArray& errors) {
    QString reason = QString::fromUtf8(errors).trimmed();
    const QString name = QStringLiteral("velmora-generate: ");
    if (reason.startsWith(name))
        reason.remove(0, name.size());
    return reason.section(QStringLiteral("; see velmora-generate"), 0, 0);
}

QString getFigures(const QJsonObject& design) {
    QString figures = QObject::tr("%1 taps, largest rounding error %2 of a unit")
                          .arg(design["taps"].toInt())
                          .arg(design["roundingError"].toDouble(), 0, 'f', 3);
    if (design["ripple"].isDouble())
        figures += QObject::tr("\nRipple %1 dB, attenuation %2 dB")
                       .arg(design["ripple"].toDouble(), 0, 'f', 3)
                       .arg(design["attenuation"].toDouble(), 0, 'f', 2);
    return figures;
}

} // namespace

DesignDialog::DesignDialog(const QString& program, const Limits& limits, QWidget* parent)
    : QDialog(parent),
      _limits(limits),
      _run(program, tr("No design")),
      _rows(new QFormLayout),
      _kindCombo(new QComboBox),
      _methodCombo(new QComboBox),
      _figures(new MessageLabel("designFigures")),
      _plot(new PlotView) {
    setObjectName(QStringLiteral("designDialog"));
    setWindowTitle(tr("Design coefficients of %1 bits").arg(limits.width));
    auto* layout = new QVBoxLayout(this);
    auto* columns = new QHBoxLayout;
    auto* wishes = new QVBoxLayout;
    wishes->addLayout(_rows);
    columns->addLayout(wishes);
    columns->addWidget(_plot, 1);
    layout->addLayout(columns, 1);
    _plot->setMinimumWidth(plotWidth);
    addKinds();
    addWish(tr("Pass band edge"), "pass", QStringLiteral("0.1"),
            tr("In units of the sample rate, or in Hz when that is given; LOW, HIGH for two edges"));
    addWish(tr("Stop band edge"), "stop", QStringLiteral("0.15"), tr("As the pass band edge"));
    addWish(tr("Sample rate (Hz)"), "rate", {}, tr("Empty when the edges are in units of the sample rate"));
    addWish(tr("Ripple (dB)"), "ripple", QStringLiteral("0.2"),
            tr("Largest over smallest magnitude in the pass bands"));
    addWish(tr("Attenuation (dB)"), "attenuation", QStringLiteral("60"),
            tr("Largest magnitude in the pass bands over that in the stop bands"));
    addWish(tr("Taps"), "taps", {}, tr("Empty for the fewest that do"));
    _rows->addRow(tr("Method"), _methodCombo);
    addWish(tr("Samples of a symbol"), "symbol-samples", QStringLiteral("4"), tr("A whole number"), true);
    addWish(tr("Roll-off"), "rolloff", QStringLiteral("0.25"), tr("0 to 1"), true);
    addWish(tr("Span"), "span", QStringLiteral("8"), tr("Length in symbols"), true);
    _figures->setTextInteractionFlags(Qt::TextSelectableByMouse);
    _figures->setWordWrap(true);
    _figures->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    _figures->setMinimumHeight(4 * fontMetrics().lineSpacing()); // what a refused wish takes
    wishes->addWidget(_figures);
    wishes->addStretch(1);
    addButtons();

    restoreWishes();
    for (QComboBox* combo : {_kindCombo, _methodCombo})
        connect(combo, QOverload<int>::of(&QComboBox::currentIndexChanged), this, &DesignDialog::onChanged);
    for (const Wish& wish : _wishes)
        connect(wish.edit, &QLineEdit::textChanged, this, &DesignDialog::onChanged);
    _pause.setSingleShot(true);
    _pause.setInterval(pause);
    connect(&_pause, &QTimer::timeout, this, &DesignDialog::ask);
    onChanged();
}

void DesignDialog::addKinds() {
    _kindCombo->setObjectName(QStringLiteral("kind"));
    _kindCombo->addItem(tr("Low-pass"), QStringLiteral("lowpass"));
    _kindCombo->addItem(tr("High-pass"), QStringLiteral("highpass"));
    _kindCombo->addItem(tr("Band-pass"), QStringLiteral("bandpass"));
    _kindCombo->addItem(tr("Band-stop"), QStringLiteral("bandstop"));
    _kindCombo->addItem(tr("Root raised cosine"), rootRaisedCosine);
    _rows->addRow(tr("Kind"), _kindCombo);
    _methodCombo->setObjectName(QStringLiteral("method"));
    _methodCombo->addItem(tr("Equiripple"), QStringLiteral("equiripple"));
    _methodCombo->addItem(tr("Kaiser window"), QStringLiteral("kaiser"));
    for (QComboBox* combo : {_kindCombo, _methodCombo})
        Brindle::theme.enrich(combo);
}

void DesignDialog::addWish(const QString& label, const char* option, const QString& initial, const QString& tip,
                           bool isOfSymbols) {
    auto* edit = new QLineEdit(initial);
    edit->setObjectName(QLatin1String(option));
    edit->setToolTip(tip);
    edit->setMinimumWidth(editWidth);
    _rows->addRow(label, edit);
    _wishes.push_back({edit, option, isOfSymbols});
}

void DesignDialog::addButtons() {
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    _okButton = buttons->button(QDialogButtonBox::Ok);
    _okButton->setDefault(true);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout()->addWidget(buttons);
}

bool DesignDialog::isOfSymbols() const {
    return _kindCombo->currentData() == rootRaisedCosine;
}

void DesignDialog::restoreWishes() {
    QSettings settings;
    settings.beginGroup(settingsGroup);
    for (QComboBox* combo : {_kindCombo, _methodCombo}) {
        if (const int index = combo->findData(settings.value(combo->objectName())); index >= 0)
            combo->setCurrentIndex(index);
    }
    for (const Wish& wish : _wishes)
        wish.edit->setText(settings.value(wish.option, wish.edit->text()).toString());
}

void DesignDialog::accept() {
    if (_design.coefficients.empty()) // Enter in a field, while there is no result
        return;
    QSettings settings;
    settings.beginGroup(settingsGroup);
    for (const QComboBox* combo : {_kindCombo, _methodCombo})
        settings.setValue(combo->objectName(), combo->currentData());
    for (const Wish& wish : _wishes)
        settings.setValue(wish.option, wish.edit->text());
    QDialog::accept();
}

void DesignDialog::showRows() {
    const auto setRowVisible = [this](QWidget* widget, bool isVisible) {
        widget->setVisible(isVisible);
        _rows->labelForField(widget)->setVisible(isVisible);
    };
    for (const Wish& wish : _wishes)
        setRowVisible(wish.edit, wish.isOfSymbols == isOfSymbols());
    setRowVisible(_methodCombo, !isOfSymbols());
}

/// What runs is about what is no more.
void DesignDialog::onChanged() {
    showRows();
    _run.cancel();
    _design = {};
    _okButton->setEnabled(false);
    _figures->tell(tr("Designing..."));
    _pause.start();
}

void DesignDialog::ask() {
    _run.ask(getArguments(), {}, [this](const GeneratorRun::Outcome& outcome) { take(outcome); });
}

QStringList DesignDialog::getArguments() const {
    QStringList arguments{QStringLiteral("coefficients"),
                          QStringLiteral("design"),
                          _kindCombo->currentData().toString(),
                          QStringLiteral("--json"),
                          QStringLiteral("--width=%1").arg(_limits.width),
                          QStringLiteral("--most=%1").arg(_limits.mostTaps)};
    if (_limits.parity != DesignWish::Parity::Any)
        arguments += _limits.parity == DesignWish::Parity::Even ? QStringLiteral("--even") : QStringLiteral("--odd");
    if (!isOfSymbols())
        arguments += "--method=" + _methodCombo->currentData().toString();
    for (const Wish& wish : _wishes) {
        const QString text = getText(wish.option);
        if (wish.isOfSymbols == isOfSymbols() && !text.isEmpty())
            arguments += QStringLiteral("--%1=%2").arg(QLatin1String(wish.option), text);
    }
    return arguments;
}

QString DesignDialog::getText(const char* option) const {
    return findChild<QLineEdit*>(QLatin1String(option))->text().remove(' ');
}

std::vector<double> DesignDialog::getNumbers(const char* option) const {
    std::vector<double> numbers;
    for (const QString& text : getText(option).split(',')) {
        if (const auto number = parseReal(text.toStdString()))
            numbers.push_back(*number);
    }
    return numbers;
}

/// They are right: the program has taken them.
std::vector<Band> DesignDialog::getWishedBands() const {
    DesignWish wish;
    wish.kind = *parseDesignKind(_kindCombo->currentData().toString().toStdString());
    wish.passEdges = getNumbers("pass");
    wish.stopEdges = getNumbers("stop");
    const double rate = findNumber(getNumbers("rate")).value_or(1);
    for (auto* edges : {&wish.passEdges, &wish.stopEdges}) {
        for (double& edge : *edges)
            edge /= rate;
    }
    return getBands(wish);
}

void DesignDialog::take(const GeneratorRun::Outcome& outcome) {
    if (outcome.isDone) {
        takeDesign(outcome.output);
        return;
    }
    _plot->show({});
    _figures->tell(outcome.problem.isEmpty() ? getReason(outcome.errors) : outcome.problem, "error");
}

void DesignDialog::takeDesign(const QByteArray& json) {
    const QJsonObject design = QJsonDocument::fromJson(json).object();
    for (const double coefficient : toNumbers(design["coefficients"]))
        _design.coefficients.push_back(static_cast<int>(coefficient));
    _design.ideal = toNumbers(design["ideal"]);
    if (!isOfSymbols()) {
        _design.bands = getWishedBands();
        _design.ripple = findNumber(getNumbers("ripple"));
        _design.attenuation = findNumber(getNumbers("attenuation"));
    }
    showMagnitude(*_plot, _design);
    _figures->tell(getFigures(design));
    _okButton->setEnabled(!_design.coefficients.empty());
}

} // namespace Velmora
