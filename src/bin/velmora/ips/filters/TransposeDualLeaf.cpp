#include <velmora/ips/filters/TransposeDualLeaf.h>

#include <velmora/catalogue/IPLeaf.h>
#include <velmora/generation/GeneratorScript.h>
#include <velmora/generation/InteractiveGeneration.h>

namespace Velmora {

TransposeDualLeaf::TransposeDualLeaf(IPLeaf* ipLeaf)
    : QWidget(ipLeaf), _ipLeaf(ipLeaf), _form(this, QStringLiteral("TransposeDualLeaf"), ipLeaf->getFormMemory(), 18) {
    getForm().addButtons(this, &TransposeDualLeaf::onReset, &TransposeDualLeaf::onGenerate);
    connect(_form.getModeCombo(), SIGNAL(currentIndexChanged(const QString&)), this,
            SLOT(onCoefficientModeChange(const QString&)));
    onCoefficientModeChange(_form.getModeCombo()->currentText());
    load();
}

TransposeDualLeaf::~TransposeDualLeaf() {
    save();
}

QString TransposeDualLeaf::getFilter() const {
    return GeneratorScript(_ipLeaf->getScriptFilename(), BRINDLE_HERE).generateText(_form.getArguments(BRINDLE_HERE));
}

Generation TransposeDualLeaf::getGeneration(const Brindle::Location& caller) const {
    return _form.getFilter().getGeneration("Generating transpose dual filter", *this, caller);
}

void TransposeDualLeaf::onGenerate() {
    InteractiveGeneration(this, getForm().getGroup(), getGeneration(BRINDLE_HERE)).run();
}

} // namespace Velmora
