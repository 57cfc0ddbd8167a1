#include <velmora/ips/filters/MacFirLeaf.h>

#include <velmora/catalogue/IPLeaf.h>
#include <velmora/generation/Clock.h>
#include <velmora/generation/GeneratorScript.h>
#include <velmora/generation/InteractiveGeneration.h>

#include <Brindle/core/Label.h>
#include <Quillon/Application.h>

#include <QRegularExpression>

namespace Velmora {

namespace {

constexpr NumberRange tapRange{4, 160, 4};
constexpr NumberRange dspRange{1, 20, 1};

const QString enable = QStringLiteral("Enable");

} // namespace

MacFirLeaf::MacFirLeaf(IPLeaf* ipLeaf)
    : QWidget(ipLeaf), _ipLeaf(ipLeaf), _filter(this, QStringLiteral("MacFirLeaf"), ipLeaf->getFormMemory()) {
    Form& form = getForm();
    _filter.addEntityName();
    _filter.addInputDataWidth({1, 18, 8});
    _filter.addOutputDataWidth({1, 16, 8});
    _tapCount = form.addNumber(tr("Tap count"), "TapCount", tapRange, rangeHelp(tapRange));
    _dspCount = form.addNumber(tr("DSP count"), "DSPCount", dspRange, rangeHelp(dspRange));
    _saturationCombo = form.addChoice(tr("Saturation stage"), "SaturationStage", {enable, tr("Disable")}, std::nullopt);
    _filter.addCoefficientWidth({1, 18, 8});
    _filter.addCoefficients();
    _filter.addTruncation({0, 50, 0});
    _patternEdit = form.addLine(tr("Auxiliary clock WFG pattern"), "ClkAux1Pattern",
                                tr("Optional.<br />Pattern of the auxiliary clock (16 bits)."));
    form.addButtons(this, &MacFirLeaf::onReset, &MacFirLeaf::onGenerate);
    load();
}

MacFirLeaf::~MacFirLeaf() {
    save();
}

bool MacFirLeaf::isFullyConfigured() const {
    static const QRegularExpression wholePattern(QStringLiteral("\\A[01]{16}\\z"));
    const QString pattern = _patternEdit->text();
    FormCheck check(_filter.getForm());
    _filter.check(check, true);
    check
        .require(getCoefficientList().size() > 2, "Coefficient count should be greater than 2.",
                 {_filter.getCoefficientsEdit()})
        .require(pattern.isEmpty() || wholePattern.match(pattern).hasMatch(), "Invalid auxiliary clock pattern.",
                 {_patternEdit});
    return check.hasPassed();
}

ArgumentDictionary MacFirLeaf::makeArguments() const {
    const QString pattern = _patternEdit->text();
    ArgumentDictionary arguments;
    arguments.add("%%COEFS%%", getCoefficientString())
        .add("%%N_TAPS%%", _tapCount->value())
        .add("%%CLK_AUX1_PATTERN%%", pattern.isEmpty() ? "1000000000000000" : pattern.toStdString())
        .add("%%SATURATION_STAGE%%", Brindle::getLabel(_saturationCombo->currentText() == enable))
        .add("%%ENTITY_NAME%%", _filter.getEntityName().toStdString())
        .add("%%APPLICATION%%", Quillon::application->getFullName().toStdString())
        .add("%%DSP_COUNT%%", _dspCount->value());
    _filter.addWidthArguments(arguments);
    arguments.add("%%DATE%%", getGenerationDateLabel());
    return arguments;
}

QString MacFirLeaf::getFilter() const {
    return Brindle::locatedAt(
        BRINDLE_HERE, [this] { return GeneratorScript(_ipLeaf->getScriptFilename()).generateText(getArguments()); });
}

Generation MacFirLeaf::getGeneration() const {
    return _filter.getGeneration("Generating filter mac", *this);
}

void MacFirLeaf::onGenerate() {
    InteractiveGeneration(this, getForm().getGroup(), getGeneration(), [this] { save(); }).run(BRINDLE_HERE);
}

} // namespace Velmora
