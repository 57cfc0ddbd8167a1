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
    return Brindle::locatedAt(BRINDLE_HERE, [this] {
        return GeneratorScript(_ipLeaf->getScriptFilename()).generateText(_form.getArguments());
    });
}

Generation TransposeDualLeaf::getGeneration() const {
    return _form.getFilter().getGeneration("Generating transpose dual filter", *this);
}

void TransposeDualLeaf::onGenerate() {
    InteractiveGeneration(this, getForm().getGroup(), getGeneration(), [this] { save(); }).run(BRINDLE_HERE);
}

} // namespace Velmora
