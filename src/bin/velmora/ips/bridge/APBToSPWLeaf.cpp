#include <velmora/ips/bridge/APBToSPWLeaf.h>

#include <velmora/catalogue/IPLeaf.h>
#include <velmora/form/GenerationMarks.h>
#include <velmora/generation/GeneratorScript.h>
#include <velmora/generation/InteractiveGeneration.h>
#include <velmora/settings/SettingsKeys.h>

#include <Brindle/core/Exception.h>

namespace Velmora {

APBToSPWLeaf::APBToSPWLeaf(IPLeaf* ipLeaf)
    : QWidget(ipLeaf),
      _ipLeaf(ipLeaf),
      _form(this, QStringLiteral("APBToSPWLeaf"), ipLeaf->getFormMemory()),
      _entityEdit(_form.addLine(tr("Entity name"), SettingsKeys::entity)) {
    _form.addStretch();
    _form.addButtons(this, &APBToSPWLeaf::onReset, &APBToSPWLeaf::onGenerate);
    APBToSPWLeaf::load();
}

APBToSPWLeaf::~APBToSPWLeaf() {
    APBToSPWLeaf::save();
}

void APBToSPWLeaf::load() {
    _form.load();
}

void APBToSPWLeaf::save() {
    _form.save();
}

void APBToSPWLeaf::onReset() {
    _form.reset();
}

GeneratedFiles APBToSPWLeaf::getIP() const {
    return Brindle::locatedAt(
        BRINDLE_HERE, [this] { return GeneratorScript(_ipLeaf->getScriptFilename()).generateFiles(getArguments()); });
}

ArgumentDictionary APBToSPWLeaf::getArguments() const {
    return Brindle::locatedAt(BRINDLE_HERE, [this] {
        ArgumentDictionary arguments;
        arguments.add("%%ENTITY_NAME%%", _entityEdit->text().toStdString());
        return arguments;
    });
}

Generation APBToSPWLeaf::getGeneration() const {
    return {"Generating " + _ipLeaf->getName(),
            _entityEdit->text(),
            FailureRules::bridge,
            [this] { return isFullyConfigured(); },
            [this] { return getArguments(); },
            [this] { return markRefusals(_form, [this] { return getIP(); }); }};
}

void APBToSPWLeaf::onGenerate() {
    InteractiveGeneration(this, _form.getGroup(), getGeneration(), [this] { save(); }).run(BRINDLE_HERE);
}

} // namespace Velmora
