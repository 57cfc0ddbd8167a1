#include <velmora/workbench/ImportDialog.h>

#include <velmora/signal/NumberText.h>
#include <velmora/workbench/MessageLabel.h>
#include <velmora/workbench/PlotView.h>
#include <velmora/workbench/ResponsePlot.h>

#include <Brindle/core/Exception.h>
#include <Brindle/widgets/Theme.h>

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileInfo>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>

#include <algorithm>

namespace Velmora {

namespace {

constexpr std::size_t mostShown = 1000; // coefficients of the list

// What the combo box holds for a scale: the beginning of the text that `parseScaling` takes.
const QString asTheyAre = QStringLiteral("none");
const QString powerOf = QStringLiteral("2^");

QString toText(const std::vector<int>& coefficients) {
    QStringList texts;
    for (std::size_t index = 0; index < std::min(mostShown, coefficients.size()); ++index)
        texts += QString::number(coefficients[index]);
    if (coefficients.size() > mostShown)
        texts += QStringLiteral("...");
    return texts.join(QStringLiteral(", "));
}

} // namespace

ImportDialog::ImportDialog(const QString& filename, const std::vector<double>& numbers, unsigned width, int mostTaps,
                           QWidget* parent)
    : QDialog(parent),
      _numbers(numbers),
      _width(width),
      _mostTaps(mostTaps),
      _scaleCombo(new QComboBox),
      _factorEdit(new QLineEdit(QStringLiteral("15"))),
      _figures(new MessageLabel("importFigures")),
      _list(new QPlainTextEdit),
      _plot(new PlotView) {
    setObjectName(QStringLiteral("importDialog"));
    setWindowTitle(tr("Import coefficients from %1").arg(QFileInfo(filename).fileName()));
    addScales();
    _factorEdit->setObjectName(QStringLiteral("importFactor"));
    _factorEdit->setAccessibleName(tr("Exponent or factor"));
    _figures->setTextInteractionFlags(Qt::TextSelectableByMouse);
    _figures->setWordWrap(true);
    _list->setObjectName(QStringLiteral("importList"));
    _list->setAccessibleName(tr("Coefficients"));
    _list->setReadOnly(true);
    _list->setTabChangesFocus(true);
    Brindle::theme.enrich(_list);
    Brindle::theme.enrich(_scaleCombo);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    _okButton = buttons->button(QDialogButtonBox::Ok);
    _okButton->setDefault(true);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* scale = new QHBoxLayout;
    scale->addWidget(_scaleCombo, 1);
    scale->addWidget(_factorEdit, 1);
    auto* rows = new QFormLayout;
    rows->addRow(tr("Scale"), scale);
    rows->addRow(tr("Result"), _figures);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(rows);
    layout->addWidget(_list, 1);
    layout->addWidget(_plot, 3);
    layout->addWidget(buttons);
    connect(_scaleCombo, QOverload<int>::of(&QComboBox::currentIndexChanged), this, &ImportDialog::update);
    connect(_factorEdit, &QLineEdit::textChanged, this, &ImportDialog::update);
    update();
    resize(640, 560);
}

void ImportDialog::addScales() {
    _scaleCombo->setObjectName(QStringLiteral("importScale"));
    _scaleCombo->setAccessibleName(tr("Scale"));
    if (areWholeAndFit(_numbers, _width))
        _scaleCombo->addItem(tr("As they are"), asTheyAre);
    _scaleCombo->addItem(tr("Full range"), QStringLiteral("full"));
    _scaleCombo->addItem(tr("Largest power of two"), QStringLiteral("power"));
    _scaleCombo->addItem(tr("Two to the power of"), powerOf);
    _scaleCombo->addItem(tr("Factor"), QString());
}

DesignedList ImportDialog::getImported() const {
    DesignedList list{_scaled->coefficients, _numbers, {}, {}, {}};
    for (double& number : list.ideal)
        number *= _scaled->scale;
    return list;
}

std::optional<Scaling> ImportDialog::getScaling() const {
    const QString chosen = _scaleCombo->currentData().toString();
    if (chosen == asTheyAre)
        return std::nullopt;
    const bool isGiven = _factorEdit->isVisibleTo(this);
    return parseScaling((isGiven ? chosen + _factorEdit->text().trimmed() : chosen).toStdString());
}

void ImportDialog::update() {
    const QString chosen = _scaleCombo->currentData().toString();
    _factorEdit->setVisible(chosen == powerOf || chosen.isEmpty());
    try {
        _scaled = importCoefficients(_numbers, _width, getScaling());
        showResult();
    } catch (const Brindle::Exception& exception) {
        _scaled.reset();
        _figures->tell(QString::fromStdString(exception.getMessage()), "error");
        _list->clear();
        _plot->show({});
    }
    _okButton->setEnabled(_scaled.has_value());
}

void ImportDialog::showResult() {
    QString figures = tr("%1 coefficients of %2 bits, scale %3, largest rounding error %4 of a unit")
                          .arg(_scaled->coefficients.size())
                          .arg(_width)
                          .arg(QString::fromStdString(getRealText(_scaled->scale)),
                               QString::fromStdString(getFixedText(_scaled->largestError, 3)));
    if (_scaled->coefficients.size() > static_cast<std::size_t>(_mostTaps))
        figures += tr("; the form takes %1 coefficients at most").arg(_mostTaps);
    _figures->tell(figures);
    _list->setPlainText(toText(_scaled->coefficients));
    showMagnitude(*_plot, getImported());
}

} // namespace Velmora
