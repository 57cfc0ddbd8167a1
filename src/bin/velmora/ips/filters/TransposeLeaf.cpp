#include <velmora/ips/filters/TransposeLeaf.h>

#include <velmora/catalogue/IPLeaf.h>
#include <velmora/generation/GeneratorScript.h>
#include <velmora/generation/InteractiveGeneration.h>

namespace Velmora {

TransposeLeaf::TransposeLeaf(IPLeaf* ipLeaf)
    : QWidget(ipLeaf), _ipLeaf(ipLeaf), _form(this, QStringLiteral("TransposeLeaf"), ipLeaf->getFormMemory(), 24) {
    getForm().addButtons(this, &TransposeLeaf::onReset, &TransposeLeaf::onGenerate);
    connect(_form.getModeCombo(), SIGNAL(currentIndexChanged(const QString&)), this,
            SLOT(onCoefficientModeChange(const QString&)));
    onCoefficientModeChange(_form.getModeCombo()->currentText());
    load();
}

TransposeLeaf::~TransposeLeaf() {
    save();
}

QString TransposeLeaf::getFilter() const {
    return Brindle::locatedAt(BRINDLE_HERE, [this] {
        return GeneratorScript(_ipLeaf->getScriptFilename()).generateText(_form.getArguments());
    });
}

Generation TransposeLeaf::getGeneration() const {
    return _form.getFilter().getGeneration("Generating transpose filter", *this);
}

void TransposeLeaf::onGenerate() {
    InteractiveGeneration(this, getForm().getGroup(), getGeneration(), [this] { save(); }).run(BRINDLE_HERE);
}

} // namespace Velmora
