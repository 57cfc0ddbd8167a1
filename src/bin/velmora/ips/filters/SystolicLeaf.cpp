#include <velmora/ips/filters/SystolicLeaf.h>

#include <velmora/catalogue/IPLeaf.h>
#include <velmora/generation/GeneratorScript.h>
#include <velmora/generation/InteractiveGeneration.h>

namespace Velmora {

SystolicLeaf::SystolicLeaf(IPLeaf* ipLeaf)
    : QWidget(ipLeaf), _ipLeaf(ipLeaf), _form(this, QStringLiteral("SystolicLeaf"), ipLeaf->getFormMemory(), 18) {
    getForm().addButtons(this, &SystolicLeaf::onReset, &SystolicLeaf::onGenerate);
    connect(_form.getModeCombo(), SIGNAL(currentIndexChanged(const QString&)), this,
            SLOT(onCoefficientModeChange(const QString&)));
    onCoefficientModeChange(_form.getModeCombo()->currentText());
    load();
}

SystolicLeaf::~SystolicLeaf() {
    save();
}

QString SystolicLeaf::getFilter() const {
    return Brindle::locatedAt(BRINDLE_HERE, [this] {
        return GeneratorScript(_ipLeaf->getScriptFilename()).generateText(_form.getArguments());
    });
}

Generation SystolicLeaf::getGeneration() const {
    return _form.getFilter().getGeneration("Generating systolic filter", *this);
}

void SystolicLeaf::onGenerate() {
    InteractiveGeneration(this, getForm().getGroup(), getGeneration(), [this] { save(); }).run(BRINDLE_HERE);
}

} // namespace Velmora
