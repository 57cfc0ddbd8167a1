#include <velmora/ips/scopes/ScopeLeaf.h>

#include <velmora/catalogue/IPLeaf.h>
#include <velmora/form/GenerationMarks.h>
#include <velmora/generation/Clock.h>
#include <velmora/generation/GeneratorScript.h>
#include <velmora/generation/InteractiveGeneration.h>
#include <velmora/ips/VhdlAssociations.h>
#include <velmora/ips/scopes/TriggerCodes.h>
#include <velmora/ips/scopes/TriggerTableView.h>

#include <Brindle/core/Label.h>
#include <Quillon/Application.h>

#include <optional>

namespace Velmora {

namespace {

const QString enable = QStringLiteral("Enable");
const QString preTrigger = QStringLiteral("Pre-trigger");
const QString basic = QStringLiteral("Basic");

bool isChosen(const QComboBox* optionCombo) {
    return optionCombo->currentText() == enable;
}

std::string dataOf(const QComboBox* combo) {
    return combo->currentData().toString().toStdString();
}

} // namespace

ScopeLeaf::ScopeLeaf(IPLeaf* ipLeaf)
    : QWidget(ipLeaf), _ipLeaf(ipLeaf), _scope(this, QStringLiteral("ScopeLeaf"), ipLeaf->getFormMemory()) {
    _scope.addEntityName();
    _scope.getForm().addSection(tr("Capture configuration"), QString(), [this] { addCaptureConfiguration(); });
    _scope.getForm().addSection(tr("Trigger configuration"), QString(), [this] { addTriggerConfiguration(); });
    _scope.addButtons(this, &ScopeLeaf::onReset, &ScopeLeaf::onGenerate);
    connect(_captureModeCombo, qOverload<int>(&QComboBox::currentIndexChanged), this, &ScopeLeaf::onCaptureModeChange);
    connect(_scope.getTriggerCountSpin(), qOverload<int>(&QSpinBox::valueChanged), this,
            &ScopeLeaf::onTriggerCountChange);
    for (QComboBox* combo : {_triggerModeCombo, _multipleLevelCombo}) {
        connect(combo, qOverload<int>(&QComboBox::currentIndexChanged), _triggerTable->viewport(),
                qOverload<>(&QWidget::update));
    }
    onReset();
    load();
}

// It stands here, where the form is known; the table knows its interface alone.
TriggerTableView::TriggerTableView(ScopeLeaf* leaf) : TriggerTableView(*leaf) {}

ScopeLeaf::~ScopeLeaf() {
    save();
}

void ScopeLeaf::addCaptureConfiguration() {
    _scope.addInputCount();
    _scope.addCaptureDepth();
    _captureModeCombo =
        _scope.addChoice(tr("Capture mode"), "CaptureMode",
                         {{preTrigger, "pre_trigger_enable"}, {tr("Multiple windows"), "multiple_windows"}});
    _windowLength = _scope.addNumber(tr("Window capture length"), "WindowCaptureLength", {64, 2048, 64});
    _scope.addPreTriggerSamples(2048);
    _userDataDelay = _scope.addNumber(tr("User data delay"), "UserDataDelay", {0, 2, 0});
    _storeTriggerCombo = addOption(tr("Store trigger pulse"), "StoreTrigger");
    _storeWindowCombo = addOption(tr("Store window number"), "StoreWindow");
}

void ScopeLeaf::addTriggerConfiguration() {
    _scope.addTriggerCount(32);
    _triggerModeCombo = _scope.addChoice(tr("Trigger mode"), "TriggerMode",
                                         {{basic, "basic"}, {tr("Basic & Edges"), "basic_and_edges"}});
    _multipleLevelCombo = addOption(tr("Multiple level trigger"), "MultipleLevelTrigger");
    _triggerTable = new TriggerTableView(this);
    _scope.addTriggerTable(_triggerTable);
}

QComboBox* ScopeLeaf::addOption(const QString& label, const QString& key) {
    return _scope.getForm().addChoice(label, key, {enable, tr("Disable")}, 1);
}

bool ScopeLeaf::hasEdges() const {
    return _triggerModeCombo->currentText() != basic;
}

std::string ScopeLeaf::getTriggerValueString(const QStringList& values) const {
    QStringList codes;
    for (const QString& value : values) {
        const std::optional<QString> code = getTriggerCode(value, hasEdges());
        if (!code && hasEdges())
            throw Brindle::located(Brindle::InternalError("Should not be here"), BRINDLE_HERE);
        if (!code) {
            throw Brindle::located(Brindle::Error("Unsupported value in basic trigger mode"), BRINDLE_HERE,
                                   {{"input", "Trig" + std::to_string(codes.size())}, {"value", value.toStdString()}});
        }
        codes += *code;
    }
    return getAssociations(codes);
}

std::string ScopeLeaf::getUsedValueString(const QStringList& values) const {
    CheckedParts unsupported;
    for (QStandardItem* item : _triggerTable->getUnsupportedCells())
        unsupported.emplace_back(CheckedCell{_triggerTable, item});
    return markRefused(_scope.getForm(), unsupported, [&] { return getTriggerValueString(values); });
}

ArgumentDictionary ScopeLeaf::makeArguments() const {
    const std::string noLevels = "(others => \"00\")";
    const std::string noEdges = "(others => \"000\")";
    const std::string values = getUsedValueString(_triggerTable->getTriggerValueList());
    std::string levels = noLevels;
    std::string firstLevels = noLevels;
    std::string edges = noEdges;
    std::string firstEdges = noEdges;
    (hasEdges() ? edges : levels) = values;
    if (isMultipleLevel())
        (hasEdges() ? firstEdges : firstLevels) = getUsedValueString(_triggerTable->getFirstTriggerValueList());

    ArgumentDictionary arguments;
    arguments.add("%%STORE_WINDOW%%", isChosen(_storeWindowCombo) ? 4 : 0)
        .add("%%STORE_TRIGGER%%", isChosen(_storeTriggerCombo) ? 1 : 0)
        .add("%%ENTITY_NAME%%", _scope.getEntityName())
        .add("%%CAPTURE_DEPTH%%", _scope.getCaptureDepth())
        .add("%%CAPTURE_WIDTH%%", _scope.getCaptureWidth())
        .addQuoted("%%TRIGGER_MODE%%", dataOf(_triggerModeCombo))
        .addQuoted("%%CAPTURE_MODE%%", dataOf(_captureModeCombo))
        .add("%%USER_DATA_DELAY%%", _userDataDelay->value())
        .add("%%EDGE_TRIGGER_VALUES%%", edges)
        .add("%%INPUT_LINE_COUNT%%", _scope.getInputCount())
        .add("%%BASIC_TRIGGER_VALUES%%", levels)
        .add("%%MULTIPLE_TRIGGER_LEVEL%%", Brindle::getLabel(isMultipleLevel()))
        .add("%%TRIGGER_LINE_COUNT%%", getTriggerCount())
        .add("%%INPUT_LINE_COUNT-1%%", _scope.getInputCount() - 1)
        .add("%%APPLICATION%%", Quillon::application->getFullName().toStdString())
        .add("%%ADVANCED_TRIGGER_VALUES%%", firstLevels)
        .add("%%TRIGGER_LINE_COUNT-1%%", getTriggerCount() - 1)
        .add("%%PRE_TRIGGER_SAMPLES%%", _scope.getPreTriggerSamples())
        .add("%%WINDOW_CAPTURE_LENGTH%%", _windowLength->value())
        .add("%%ADVANCED_EDGE_TRIGGER_VALUES%%", firstEdges)
        .add("%%DATE%%", getGenerationDateLabel());
    return arguments;
}

QString ScopeLeaf::getIP() const {
    return Brindle::locatedAt(
        BRINDLE_HERE, [this] { return GeneratorScript(_ipLeaf->getScriptFilename()).generateText(getArguments()); });
}

void ScopeLeaf::load() {
    _scope.load();
    onCaptureModeChange();
}

void ScopeLeaf::onCaptureModeChange() {
    const bool isPreTrigger = _captureModeCombo->currentText() == preTrigger;
    _scope.getPreTriggerSpin()->setEnabled(isPreTrigger);
    _windowLength->setEnabled(!isPreTrigger);
    _storeWindowCombo->setEnabled(!isPreTrigger);
}

void ScopeLeaf::onTriggerCountChange() {
    _triggerTable->invalidateFilter();
}

Generation ScopeLeaf::getGeneration() const {
    return _scope.getGeneration([this] { return getArguments(); }, [this] { return getIP(); });
}

void ScopeLeaf::onGenerate() {
    InteractiveGeneration(this, getSettingsGroup(), getGeneration(), [this] { save(); }).run(BRINDLE_HERE);
}

} // namespace Velmora
