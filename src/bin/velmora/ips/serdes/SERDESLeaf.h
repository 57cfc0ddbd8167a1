#pragma once

#include <velmora/catalogue/GeneratorLeaf.h>
#include <velmora/form/Form.h>
#include <velmora/ips/serdes/LocationForm.h>
#include <velmora/rules/ArgumentDictionary.h>

#include <Brindle/core/Exception.h>

#include <QWidget>

#include <string>

namespace Velmora {

class IPLeaf;
class LocationTableView;

/// The form of the SER/DES: up to 30 serialisers and deserialisers that share a word clock, a data size and a bank.
class SERDESLeaf : public QWidget, public GeneratorLeaf, public LocationForm {
    Q_OBJECT

public:
    /// The IP leaf, kept and not owned, gives the script.
    explicit SERDESLeaf(IPLeaf* ipLeaf);
    ~SERDESLeaf() override;

    Form& getForm() final { return _form; }
    int getSERCount() const override { return _serCount->value(); }
    int getDESCount() const override { return _desCount->value(); }
    QString getBankNumber() const override { return _bankCombo->currentText(); }
    QStringList getLocations() const override;
    const QString& getSettingsGroup() const override { return _form.getGroup(); }

    /// VHDL aggregates by line number from 0, such as `(0 => "03P", 1 => "03N")`; `(others => "XXX")` for no line.
    std::string getSERLocationString() const;
    std::string getSEROutputDelayLineString() const;
    std::string getDESLocationString() const;

    /// Tells the first thing that is wrong with the form; true when nothing is.
    bool isFullyConfigured() const;
    /// What the script is given. Throws Brindle::InvalidRequest for a text that cannot be passed.
    ArgumentDictionary getArguments() const {
        return Brindle::locatedAt(BRINDLE_HERE, [this] { return makeArguments(); });
    }
    /// Runs the script on the form's values. Throws what the runner and `getArguments` throw.
    QString getIP() const;
    Generation getGeneration() const override;
    void load();
    void save() { _form.save(); }

public Q_SLOTS:
    /// Leaves the training values alone.
    void onReset() { _form.reset(); }
    void onSERCountChanged();
    void onDESCountChanged();
    void onGenerate();

private:
    ArgumentDictionary makeArguments() const;
    void addGlobalParameters();
    void addSERParameters();
    void addDESParameters();
    QComboBox* addPadType();
    QLineEdit* addTrainingValue();

    IPLeaf* const _ipLeaf;
    Form _form;
    QLineEdit* _entityEdit = nullptr;

    QLineEdit* _prefixEdit = nullptr;
    QSpinBox* _wordClock = nullptr; // MHz
    QSpinBox* _dataSize = nullptr;  // bits
    QSpinBox* _serCount = nullptr;
    QSpinBox* _desCount = nullptr;
    QComboBox* _bankCombo = nullptr;

    QComboBox* _serPadTypeCombo = nullptr;
    QComboBox* _serDifferentialCombo = nullptr;
    QComboBox* _slewRateCombo = nullptr;
    QSpinBox* _outputCapacity = nullptr;
    QLineEdit* _serTrainingEdit = nullptr;
    LocationTableView* _serTable = nullptr;

    QComboBox* _desPadTypeCombo = nullptr;
    QComboBox* _desDifferentialCombo = nullptr;
    QSpinBox* _termination = nullptr;
    QComboBox* _terminationReferenceCombo = nullptr;
    QComboBox* _turboCombo = nullptr;
    QDoubleSpinBox* _inputSignalSlope = nullptr;
    QLineEdit* _desTrainingEdit = nullptr;
    LocationTableView* _desTable = nullptr;
};

} // namespace Velmora
