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
    return GeneratorScript(_ipLeaf->getScriptFilename(), BRINDLE_HERE).generateText(_form.getArguments(BRINDLE_HERE));
}

Generation TransposeLeaf::getGeneration(const Brindle::Location& caller) const {
    return _form.getFilter().getGeneration("Generating transpose filter", *this, caller);
}

void TransposeLeaf::onGenerate() {
    InteractiveGeneration(this, getForm().getGroup(), getGeneration(BRINDLE_HERE)).run();
}

} // namespace Velmora
