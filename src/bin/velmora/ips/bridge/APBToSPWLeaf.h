#pragma once

#include <velmora/catalogue/GeneratorLeaf.h>
#include <velmora/form/Form.h>

#include <QWidget>

namespace Velmora {

class IPLeaf;

/// The form of the APB slave to serial master bridge, whose only parameter is the name of the top entity. It generates
/// a directory of files.
class APBToSPWLeaf : public QWidget, public GeneratorLeaf {
    Q_OBJECT

public:
    /// The IP leaf, kept and not owned, gives the IP's name and script.
    explicit APBToSPWLeaf(IPLeaf* ipLeaf);
    ~APBToSPWLeaf() override;

    Form& getForm() final { return _form; }
    /// Any entity name can be generated, the empty one too.
    virtual bool isFullyConfigured() const { return true; }
    virtual void load();
    virtual void save();
    /// Runs the script on the form's values. Throws what the runner throws.
    virtual GeneratedFiles getIP() const;
    /// What the script is given. Throws Brindle::InvalidRequest for a name that cannot be passed.
    ArgumentDictionary getArguments() const;
    Generation getGeneration() const override;

public Q_SLOTS:
    void onReset();
    /// Asks for a directory and writes the generated files into it.
    void onGenerate();

private:
    IPLeaf* const _ipLeaf;
    Form _form;
    QLineEdit* const _entityEdit;
};

} // namespace Velmora
