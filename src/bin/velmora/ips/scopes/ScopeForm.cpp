#include <velmora/ips/scopes/ScopeForm.h>

#include <velmora/form/FormCheck.h>
#include <velmora/form/GenerationMarks.h>
#include <velmora/settings/SettingsKeys.h>

#include <algorithm>
#include <array>

namespace Velmora {

namespace {

struct CaptureDepth {
    const char* label;
    int samples;
    int exponent; // of the next power of two
};

constexpr std::array captureDepths{
    CaptureDepth{"2K", 2048, 11},   CaptureDepth{"4K", 4096, 12},   CaptureDepth{"6K", 6144, 13},
    CaptureDepth{"12K", 12288, 14}, CaptureDepth{"24K", 24576, 15}, CaptureDepth{"48K", 49152, 16},
};

} // namespace

ScopeForm::ScopeForm(QWidget* widget, const QString& className, FormMemory memory)
    : _form(widget, className, memory, AbsentValue::KeepsCurrent) {}

void ScopeForm::addEntityName() {
    _entityEdit = _form.addLine(QObject::tr("Entity name"), SettingsKeys::entity);
}

void ScopeForm::addInputCount() {
    _inputCount = addNumber(QObject::tr("Input line count"), "InputCount", {2, 240, 2});
}

void ScopeForm::addCaptureDepth() {
    std::vector<ScopeChoice> choices;
    choices.reserve(captureDepths.size());
    for (const CaptureDepth& depth : captureDepths)
        choices.push_back({QLatin1String(depth.label), depth.samples});
    _depthCombo = addChoice(QObject::tr("Capture depth"), "CaptureDepth", choices);
}

void ScopeForm::addPreTriggerSamples(int most) {
    _preTriggerSamples = addNumber(QObject::tr("Pre-trigger samples"), "PreTriggerSamples", {1, most, 1});
}

void ScopeForm::addTriggerCount(int most) {
    _triggerCount = addNumber(QObject::tr("Trigger line count"), "TriggerCount", {1, most, 1});
}

void ScopeForm::addTriggerTable(LineTableView* table) {
    _form.addTable(table, _triggerCount->objectName());
    _form.addHelp(QObject::tr("The alias is not mandatory,\nit is only an aid to recognize easily a net."), 1);
}

QSpinBox* ScopeForm::addNumber(const QString& label, const QString& key, const NumberRange& range) {
    return _form.addNumber(label, key, range, rangeHelp(range));
}

QComboBox* ScopeForm::addChoice(const QString& label, const QString& key, const std::vector<ScopeChoice>& choices) {
    QStringList labels;
    for (const ScopeChoice& choice : choices)
        labels += choice.label;
    QComboBox* combo = _form.addChoice(label, key, labels, 0);
    for (int index = 0; index < combo->count(); ++index)
        combo->setItemData(index, choices.at(static_cast<std::size_t>(index)).data);
    return combo;
}

int ScopeForm::getCaptureWidth() const {
    const auto depth = std::ranges::find(captureDepths, getCaptureDepth(), &CaptureDepth::samples);
    if (depth == captureDepths.end())
        throw Brindle::InternalError("Should not be here");
    return depth->exponent;
}

bool ScopeForm::isFullyConfigured() const {
    FormCheck check(_form);
    check.require(!_entityEdit->text().isEmpty(), "Entity name not specified!", {_entityEdit});
    return check.hasPassed();
}

Generation ScopeForm::getGeneration(const std::function<ArgumentDictionary()>& getArguments,
                                    const Generation::TextScript& script) const {
    return {"Generating Scope",
            _entityEdit->text(),
            FailureRules::lineTable,
            [this] { return isFullyConfigured(); },
            getArguments,
            [this, script] { return markRefusals(_form, script); }};
}

} // namespace Velmora
