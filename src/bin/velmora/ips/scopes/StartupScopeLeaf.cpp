#include <velmora/ips/scopes/StartupScopeLeaf.h>

#include <velmora/catalogue/IPLeaf.h>
#include <velmora/generation/Clock.h>
#include <velmora/generation/GeneratorScript.h>
#include <velmora/generation/InteractiveGeneration.h>
#include <velmora/ips/scopes/StartupTriggerTableView.h>

#include <Quillon/Application.h>

namespace Velmora {

StartupScopeLeaf::StartupScopeLeaf(IPLeaf* ipLeaf)
    : QWidget(ipLeaf), _ipLeaf(ipLeaf), _scope(this, QStringLiteral("StartupScopeLeaf"), ipLeaf->getFormMemory()) {
    _scope.addEntityName();
    _scope.getForm().addSection(tr("Capture configuration"), QString(), [this] { addCaptureConfiguration(); });
    _scope.getForm().addSection(tr("Trigger configuration"), QString(), [this] { addTriggerConfiguration(); });
    _scope.addButtons(this, &StartupScopeLeaf::onReset, &StartupScopeLeaf::onGenerate);
    connect(_scope.getTriggerCountSpin(), qOverload<int>(&QSpinBox::valueChanged), this,
            &StartupScopeLeaf::onTriggerCountChange);
    onReset();
    load();
}

// It stands here, where the form is known; the table knows its interface alone.
StartupTriggerTableView::StartupTriggerTableView(StartupScopeLeaf* leaf) : StartupTriggerTableView(*leaf) {}

StartupScopeLeaf::~StartupScopeLeaf() {
    save();
}

void StartupScopeLeaf::addCaptureConfiguration() {
    _scope.addInputCount();
    _scope.addCaptureDepth();
    _scope.addPreTriggerSamples(1000);
}

void StartupScopeLeaf::addTriggerConfiguration() {
    _scope.addTriggerCount(4);
    _triggerTable = new StartupTriggerTableView(this);
    _scope.addTriggerTable(_triggerTable);
}

std::string StartupScopeLeaf::getTriggerValueString(const QStringList& values) const {
    QString bits;
    for (const QString& value : values)
        bits.prepend(value);
    return "\"" + bits.toStdString() + "\"";
}

ArgumentDictionary StartupScopeLeaf::makeArguments() const {
    ArgumentDictionary arguments;
    arguments.add("%%ENTITY_NAME%%", _scope.getEntityName())
        .add("%%CAPTURE_DEPTH%%", _scope.getCaptureDepth())
        .add("%%CAPTURE_WIDTH%%", _scope.getCaptureWidth())
        .add("%%INPUT_LINE_COUNT%%", _scope.getInputCount())
        .add("%%TRIGGER_LINE_COUNT%%", getTriggerCount())
        .add("%%STARTUP_TRIG_VALUE%%", getTriggerValueString(_triggerTable->getTriggerValueList()))
        .add("%%INPUT_LINE_COUNT-1%%", _scope.getInputCount() - 1)
        .add("%%APPLICATION%%", Quillon::application->getFullName().toStdString())
        .add("%%TRIGGER_LINE_COUNT-1%%", getTriggerCount() - 1)
        .add("%%PRE_TRIGGER_SAMPLES%%", _scope.getPreTriggerSamples())
        .add("%%DATE%%", getGenerationDateLabel());
    return arguments;
}

QString StartupScopeLeaf::getIP() const {
    return Brindle::locatedAt(
        BRINDLE_HERE, [this] { return GeneratorScript(_ipLeaf->getScriptFilename()).generateText(getArguments()); });
}

void StartupScopeLeaf::onTriggerCountChange() {
    _triggerTable->invalidateFilter();
}

Generation StartupScopeLeaf::getGeneration() const {
    return _scope.getGeneration([this] { return getArguments(); }, [this] { return getIP(); });
}

void StartupScopeLeaf::onGenerate() {
    InteractiveGeneration(this, getSettingsGroup(), getGeneration(), [this] { save(); }).run(BRINDLE_HERE);
}

} // namespace Velmora
