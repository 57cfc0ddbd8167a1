#include <velmora/ips/serdes/SERDESLeaf.h>

#include <velmora/catalogue/IPLeaf.h>
#include <velmora/form/FormCheck.h>
#include <velmora/form/GenerationMarks.h>
#include <velmora/generation/Clock.h>
#include <velmora/generation/GeneratorScript.h>
#include <velmora/generation/InteractiveGeneration.h>
#include <velmora/ips/VhdlAssociations.h>
#include <velmora/ips/serdes/LocationTableView.h>
#include <velmora/settings/SettingsKeys.h>

#include <Brindle/core/Label.h>
#include <Quillon/PadType.h>

#include <QHash>
#include <QVector>

namespace Velmora {

namespace {

constexpr int mostLines = 30; // SER and DES together: the pads of a bank
constexpr NumberRange dataSizeRange{3, 10, 3};
constexpr NumberRange countRange{0, mostLines, 1};

// The texts of choices are what the script receives.
const QString defaultPadType = QStringLiteral("LVDS_2.5V");
const QStringList booleans{"True", "False"};
const QStringList banks{"02", "03", "04", "05", "09", "10", "11", "12"};

QStringList getPadTypes() {
    QStringList names;
    for (const Quillon::PadType& padType : Quillon::PadType::getConcretes())
        names += padType.getName();
    return names;
}

QString getVoltage(const QComboBox* padTypeCombo) {
    return Quillon::PadType(padTypeCombo->currentText()).getVoltage();
}

std::string textOf(const QComboBox* combo) {
    return combo->currentText().toStdString();
}

std::string textOf(const QSpinBox* spinBox) {
    return Brindle::getLabel(spinBox->value());
}

std::string getAggregate(const QStringList& texts) {
    return texts.isEmpty() ? "(others => \"XXX\")" : "(" + getAssociations(texts) + ")";
}

/// Two lines on one pad.
struct LocationClash {
    std::string location;
    CheckedParts cells;
};

/// Adds the locations of a table to those in use, which are known by their cells; tells the first that already was.
LocationClash takeLocations(LocationTableView* table, QHash<QString, CheckedCell>& used) {
    for (QStandardItem* item : table->getLocationCells()) {
        const CheckedCell cell{table, item};
        if (used.contains(item->text()))
            return {item->text().toStdString(), {used.value(item->text()), cell}};
        used.insert(item->text(), cell);
    }
    return {};
}

std::string usedMessage(const char* mode, const LocationClash& clash) {
    return std::string(mode) + " location '" + clash.location + "' is already used!";
}

} // namespace

SERDESLeaf::SERDESLeaf(IPLeaf* ipLeaf)
    : QWidget(ipLeaf),
      _ipLeaf(ipLeaf),
      _form(this, QStringLiteral("SERDESLeaf"), ipLeaf->getFormMemory(), AbsentValue::KeepsCurrent) {
    _entityEdit = _form.addLine(tr("Entity name"), SettingsKeys::entity);
    _form.addSection(tr("Global parameters"), QString(), [this] { addGlobalParameters(); });
    _form.addSection(tr("SER parameters"), "SER", [this] { addSERParameters(); });
    _form.addSection(tr("DES parameters"), "DES", [this] { addDESParameters(); });
    _form.addStretch();
    _form.addButtons(this, &SERDESLeaf::onReset, &SERDESLeaf::onGenerate);
    connect(_serCount, qOverload<int>(&QSpinBox::valueChanged), this, &SERDESLeaf::onSERCountChanged);
    connect(_desCount, qOverload<int>(&QSpinBox::valueChanged), this, &SERDESLeaf::onDESCountChanged);
    for (const auto* table : {_serTable, _desTable}) // a pad in one may be one too many in the other
        connect(&_form.getEdits(), &EditWatch::edited, table->viewport(), qOverload<>(&QWidget::update));
    onReset();
    load();
}

// It stands here, where the form is known; the table knows its interface alone.
LocationTableView::LocationTableView(Mode mode, SERDESLeaf* leaf) : LocationTableView(mode, *leaf) {}

SERDESLeaf::~SERDESLeaf() {
    save();
}

void SERDESLeaf::addGlobalParameters() {
    _prefixEdit = _form.addLine(tr("Parameter's prefix"), "Prefix");
    _wordClock =
        _form.addNumber(tr("Word clock frequency (MHz)"), "WordClock", {20, 200, 20}, tr("Range 20 to 200MHz."));
    _dataSize = _form.addNumber(tr("Data size"), "DataSize", dataSizeRange, rangeHelp(dataSizeRange));
    _serCount = _form.addNumber(tr("SER count"), "SERCount", countRange);
    _desCount = _form.addNumber(tr("DES count"), "DESCount", countRange);
    _form.addHelp(tr("Range 0 to 30.\nThe sum of SER & DES must be lower or equal to 30."), 2);
    _bankCombo = _form.addChoice(tr("Bank number"), "BankNumber", banks, 0);
}

void SERDESLeaf::addSERParameters() {
    _serPadTypeCombo = addPadType();
    _serDifferentialCombo = _form.addChoice(tr("Differential"), "Differential", booleans, 0);
    _slewRateCombo = _form.addChoice(tr("Slew rate"), "SlewRate", {"Slow", "Medium", "Fast"}, 2);
    _outputCapacity = _form.addNumber(tr("Output capacity"), "OutputCapacity", {0, 100, 0});
    _serTrainingEdit = addTrainingValue();
    _serTable = new LocationTableView(LocationTableView::SER, this);
    _form.addTable(_serTable, _serCount->objectName());
}

void SERDESLeaf::addDESParameters() {
    _desPadTypeCombo = addPadType();
    _desDifferentialCombo = _form.addChoice(tr("Differential"), "Differential", booleans, 0);
    _termination = _form.addNumber(tr("Termination"), "Termination", {0, 100, 100});
    _terminationReferenceCombo =
        _form.addChoice(tr("Termination reference"), "TerminationReference", {"VT", "Floating"}, 0);
    _turboCombo = _form.addChoice(tr("Turbo"), "Turbo", booleans, 1);
    _inputSignalSlope = _form.addDecimal(tr("Input signal slope"), "InputSignalSlope", {0.5, 20.0, 0.5, 0.5, 1});
    _desTrainingEdit = addTrainingValue();
    _desTable = new LocationTableView(LocationTableView::DES, this);
    _form.addTable(_desTable, _desCount->objectName());
}

QComboBox* SERDESLeaf::addPadType() {
    const QStringList padTypes = getPadTypes();
    return _form.addChoice(tr("Pad type"), "PadType", padTypes, padTypes.indexOf(defaultPadType));
}

QLineEdit* SERDESLeaf::addTrainingValue() {
    return _form.addLine(tr("Training value"), "TrainingValue", tr("Length must match data size."),
                         LineReset::KeepsText);
}

QStringList SERDESLeaf::getLocations() const {
    return _serTable->getLocationList() + _desTable->getLocationList();
}

bool SERDESLeaf::isFullyConfigured() const {
    const QStringList serLocations = _serTable->getLocationList();
    const QStringList desLocations = _desTable->getLocationList();
    QHash<QString, CheckedCell> used;
    const LocationClash serClash = takeLocations(_serTable, used);
    const LocationClash desClash = takeLocations(_desTable, used);
    FormCheck check(_form);
    check.require(!_entityEdit->text().isEmpty(), "Entity name not specified!", {_entityEdit})
        .require(!_prefixEdit->text().isEmpty(), "Parameter's prefix not specified!", {_prefixEdit})
        .require(getSERCount() + getDESCount() <= mostLines, "SER count + DES count must be less than 30.",
                 {_serCount, _desCount})
        .require(getVoltage(_serPadTypeCombo) == getVoltage(_desPadTypeCombo),
                 "Pad type of SER and DES must have the same voltage!", {_serPadTypeCombo, _desPadTypeCombo})
        .require(_serTrainingEdit->text().length() == _dataSize->value(),
                 "SER training value must have the length specified in data size!", {_serTrainingEdit})
        .require(_desTrainingEdit->text().length() == _dataSize->value(),
                 "DES training value must have the length specified in data size!", {_desTrainingEdit})
        .require(serLocations.size() == getSERCount(), "All the SER locations have not been set!", {_serTable})
        .require(serClash.cells.empty(), usedMessage("SER", serClash), serClash.cells)
        .require(_serTable->getOutputDelayList().size() == getSERCount(),
                 "All the SER output delay lines have not been set!", {_serTable})
        .require(desLocations.size() == getDESCount(), "All the DES locations have not been set!", {_desTable})
        .require(desClash.cells.empty(), usedMessage("DES", desClash), desClash.cells);
    return check.hasPassed();
}

std::string SERDESLeaf::getSERLocationString() const {
    return getAggregate(_serTable->getLocationList());
}

std::string SERDESLeaf::getSEROutputDelayLineString() const {
    return getAggregate(_serTable->getOutputDelayList());
}

std::string SERDESLeaf::getDESLocationString() const {
    return getAggregate(_desTable->getLocationList());
}

ArgumentDictionary SERDESLeaf::makeArguments() const {
    const QStringList inputDelays = QVector<QString>(getDESCount(), QStringLiteral("00")).toList();
    const std::string trainingValue = _desTrainingEdit->text().toStdString(); // SER and DES are trained with the same
    ArgumentDictionary arguments;
    arguments.add("%%PREFIX%%", _prefixEdit->text().toStdString())
        .add("%%ENTITY_NAME%%", _entityEdit->text().toStdString())
        .add("%%WORD_CLOCK%%", _wordClock->value())
        .add("%%DATA_SIZE%%", _dataSize->value())
        .add("%%SER_COUNT%%", getSERCount())
        .add("%%SER_COUNT-1%%", getSERCount() - 1)
        .add("%%DES_COUNT%%", getDESCount())
        .add("%%DES_COUNT-1%%", getDESCount() - 1)
        .addQuoted("%%BANK_NUMBER%%", textOf(_bankCombo))
        .addQuoted("%%SER_PADTYPE%%", textOf(_serPadTypeCombo))
        .addQuoted("%%SER_DIFFERENTIAL%%", textOf(_serDifferentialCombo))
        .addQuoted("%%SER_SLEW_RATE%%", textOf(_slewRateCombo))
        .addQuoted("%%SER_OUTPUT_CAPACITY%%", textOf(_outputCapacity))
        .add("%%SER_OUTPUT_DELAY_LINE%%", getSEROutputDelayLineString())
        .addQuoted("%%SER_TRAINING_VALUE%%", trainingValue)
        .add("%%SER_LOCATIONS%%", getSERLocationString())
        .addQuoted("%%DES_PADTYPE%%", textOf(_desPadTypeCombo))
        .addQuoted("%%DES_DIFFERENTIAL%%", textOf(_desDifferentialCombo))
        .addQuoted("%%DES_TERMINATION%%", textOf(_termination))
        .addQuoted("%%DES_TERMINATION_REFERENCE%%", textOf(_terminationReferenceCombo))
        .addQuoted("%%DES_TURBO%%", textOf(_turboCombo))
        .addQuoted("%%DES_INPUT_SIGNAL_SLOPE%%", Brindle::getLabel(_inputSignalSlope->value()))
        .add("%%DES_INPUT_DELAY_LINE%%", "(" + getAssociations(inputDelays) + ")")
        .addQuoted("%%DES_TRAINING_VALUE%%", trainingValue)
        .add("%%DES_LOCATIONS%%", getDESLocationString())
        .add("%%DATE%%", getGenerationDateLabel());
    return arguments;
}

QString SERDESLeaf::getIP() const {
    return Brindle::locatedAt(
        BRINDLE_HERE, [this] { return GeneratorScript(_ipLeaf->getScriptFilename()).generateText(getArguments()); });
}

void SERDESLeaf::load() {
    for (QComboBox* padTypeCombo : {_serPadTypeCombo, _desPadTypeCombo})
        padTypeCombo->setCurrentIndex(padTypeCombo->findText(defaultPadType)); // for when none is stored
    _form.load();
}

void SERDESLeaf::onSERCountChanged() {
    _serTable->invalidateFilter();
}

void SERDESLeaf::onDESCountChanged() {
    _desTable->invalidateFilter();
}

Generation SERDESLeaf::getGeneration() const {
    return {"Generating Scope",
            _entityEdit->text(),
            FailureRules::lineTable,
            [this] { return isFullyConfigured(); },
            [this] { return getArguments(); },
            [this] { return markRefusals(_form, [this] { return getIP(); }); }};
}

void SERDESLeaf::onGenerate() {
    InteractiveGeneration(this, getSettingsGroup(), getGeneration(), [this] { save(); }).run(BRINDLE_HERE);
}

} // namespace Velmora
