#include <velmora/ips/described/DescribedLeaf.h>

#include <velmora/catalogue/IPLeaf.h>
#include <velmora/form/GenerationMarks.h>
#include <velmora/generation/Clock.h>
#include <velmora/generation/GeneratorScript.h>
#include <velmora/generation/InteractiveGeneration.h>
#include <velmora/ips/described/DescribedEditor.h>
#include <velmora/ips/described/DescribedTableView.h>
#include <velmora/ips/described/FormDescriptionFile.h>
#include <velmora/rules/Coefficients.h>

#include <Brindle/core/Console.h>
#include <Brindle/core/Label.h>
#include <Quillon/Application.h>

#include <QTextEdit>

#include <algorithm>
#include <utility>

namespace Velmora {

namespace {

constexpr int coefficientsHeight = 100; // pixels, at least

QString getGroup(const IPLeaf& ip) {
    return QString::fromStdString("IP/" + ip.getCompany() + "/" + ip.getUID());
}

std::vector<std::string> getCoefficients(const QTextEdit* editor) {
    return parseCoefficients(editor->toPlainText().toStdString());
}

} // namespace

DescribedLeaf::DescribedLeaf(IPLeaf* ipLeaf, FormDescription description)
    : QWidget(ipLeaf),
      _ipLeaf(ipLeaf),
      _description(std::move(description)),
      _form(this, QStringLiteral("DescribedLeaf"), ipLeaf->getFormMemory(), AbsentValue::KeepsCurrent,
            getGroup(*ipLeaf)) {
    for (const DescribedSection& section : _description.sections) {
        const auto addRows = [&] {
            for (const DescribedRow& row : section.rows)
                addRow(row);
        };
        if (section.title.empty())
            addRows();
        else
            _form.addSection(QString::fromStdString(section.title), QString(), addRows);
    }
    forEachRow([this](const DescribedRow& row) { connectRow(row); });
    _form.addStretch();
    _form.addButtons(this, &DescribedLeaf::onReset, &DescribedLeaf::onGenerate);
    onReset();
    load();
}

DescribedLeaf::~DescribedLeaf() {
    save();
}

std::optional<FormDescription> DescribedLeaf::readDescription(const IPDescription& ip) {
    return Brindle::locatedAt(BRINDLE_HERE, [&ip] { return readFormDescription(ip); });
}

void DescribedLeaf::addRow(const DescribedRow& row) {
    const QString key = QString::fromStdString(row.key);
    const auto add = [&](const auto& kind) {
        const DescribedEditor made = makeEditor(kind);
        _widgets[key] = _form.addField(QString::fromStdString(row.label), key, made.editor, made.reset,
                                       row.help.empty() ? made.range : QString::fromStdString(row.help));
    };
    if (const auto* table = std::get_if<DescribedTable>(&row.kind)) {
        auto* view = new DescribedTableView(key, _form.getGroup(), *table);
        _widgets[key] = view;
        _form.addTable(view, QString::fromStdString(table->count));
        return;
    }
    std::visit(
        [&]<class Kind>(const Kind& kind) {
            if constexpr (!std::is_same_v<Kind, DescribedTable>)
                add(kind);
        },
        row.kind);
    if (std::holds_alternative<DescribedCoefficients>(row.kind))
        _widgets[key]->setMinimumHeight(coefficientsHeight);
}

/// With the rows that it names, which may come after it.
void DescribedLeaf::connectRow(const DescribedRow& row) {
    if (const auto* table = std::get_if<DescribedTable>(&row.kind))
        find<DescribedTableView>(row.key)->setCount(find<QSpinBox>(table->count));
    if (!row.enabled)
        return;
    connect(find<QComboBox>(row.enabled->key), qOverload<int>(&QComboBox::currentIndexChanged), this,
            [this, &row] { applyCondition(row); });
    applyCondition(row);
}

void DescribedLeaf::applyCondition(const DescribedRow& row) {
    const auto& texts = row.enabled->texts;
    const std::string shown = find<QComboBox>(row.enabled->key)->currentText().toStdString();
    _form.setEnabled(find<QWidget>(row.key), std::ranges::find(texts, shown) != texts.end());
}

bool DescribedLeaf::isFullyConfigured() const {
    FormCheck check(_form);
    forEachRow([&](const DescribedRow& row) { checkRow(check, row); });
    if (!check.hasPassed() || !passesScript())
        return false;
    remarkCoefficients();
    return true;
}

/// What cannot be filled in may be empty.
void DescribedLeaf::checkRow(FormCheck& check, const DescribedRow& row) const {
    auto* widget = find<QWidget>(row.key);
    if (!widget->isEnabledTo(this))
        return;
    if (const auto* table = std::get_if<DescribedTable>(&row.kind)) {
        auto* view = find<DescribedTableView>(row.key);
        for (int line = 0; line < view->getRowCount(); ++line) {
            for (std::size_t column = 0; column < table->columns.size(); ++column) {
                const std::string& message = table->columns[column].required;
                QStandardItem* cell = view->getCell(line, column);
                check.require(message.empty() || !cell->text().isEmpty(), message, {CheckedCell{view, cell}});
            }
        }
    } else if (const auto* line = find<QLineEdit>(row.key)) {
        check.require(row.required.empty() || !line->text().isEmpty(), row.required, {widget});
    } else if (const auto* list = find<QTextEdit>(row.key)) {
        check.require(row.required.empty() || !getCoefficients(list).empty(), row.required, {widget});
    }
}

/// What the script itself checks. It fails as a generation does.
bool DescribedLeaf::passesScript() const {
    const auto check = [this] {
        const unsigned long errorCount = Brindle::console.getErrorCount();
        const auto failures = _ipLeaf->getScript().check(getArguments());
        if (failures && !failures->empty()) {
            const FailedCheck& first = failures->front();
            FormCheck(_form).require(false, first.message.toStdString(), findParts(first.keys));
        }
        return Brindle::console.getErrorCount() == errorCount;
    };
    Generation generation;
    generation.failureRule = FailureRules::filter;
    return generation.runGuarded(BRINDLE_HERE, [&] { return markRefusals(_form, check); });
}

/// Fields, tables, and cells as "Registers/3/Name".
CheckedParts DescribedLeaf::findParts(const QStringList& keys) const {
    CheckedParts parts;
    for (const QString& key : keys) {
        const QString row = key.section('/', 0, 0);
        const QString title = key.section('/', 2);
        QWidget* widget = _widgets.value(row);
        auto* view = dynamic_cast<DescribedTableView*>(widget);
        if (QStandardItem* cell = view ? view->findCell(key.section('/', 1, 1), title) : nullptr)
            parts.emplace_back(CheckedCell{view, cell});
        else if (widget && key == row)
            parts.emplace_back(widget);
        else
            Brindle::console.remark("The script names '" + key.toStdString() + "', which is no key of the form");
    }
    return parts;
}

/// Tells of those that the design cannot hold as they are.
void DescribedLeaf::remarkCoefficients() const {
    forEachRow([this](const DescribedRow& row) {
        const auto* coefficients = std::get_if<DescribedCoefficients>(&row.kind);
        if (!coefficients || !find<QWidget>(row.key)->isEnabledTo(this))
            return;
        const auto* width = find<QSpinBox>(coefficients->width);
        const std::string label = width->accessibleName().toStdString();
        for (const std::string& remark : getRangeRemarks(getCoefficients(find<QTextEdit>(row.key)),
                                                         static_cast<unsigned long>(width->value()), label))
            Brindle::console.remark(remark);
    });
}

ArgumentDictionary DescribedLeaf::makeArguments() const {
    ArgumentDictionary arguments;
    forEachRow([&](const DescribedRow& row) { addArgument(arguments, row); });
    arguments.add("%%APPLICATION%%", Quillon::application->getFullName().toStdString())
        .add("%%DATE%%", getGenerationDateLabel());
    return arguments;
}

void DescribedLeaf::addArgument(ArgumentDictionary& arguments, const DescribedRow& row) const {
    struct Adder {
        void operator()(const DescribedText&) const {
            arguments.add(row.argument, leaf.find<QLineEdit>(row.key)->text().toStdString());
        }
        void operator()(const DescribedNumber&) const {
            arguments.add(row.argument, leaf.find<QSpinBox>(row.key)->value());
        }
        void operator()(const DescribedDecimal&) const {
            arguments.add(row.argument, Brindle::getLabel(leaf.find<QDoubleSpinBox>(row.key)->value()));
        }
        void operator()(const DescribedChoice& choice) const {
            const int place = leaf.find<QComboBox>(row.key)->currentIndex();
            arguments.addLiteral(row.argument, choice.items.at(static_cast<std::size_t>(place)).value);
        }
        void operator()(const DescribedCoefficients& coefficients) const {
            auto* editor = leaf.find<QTextEdit>(row.key);
            const auto width = static_cast<unsigned long>(leaf.find<QSpinBox>(coefficients.width)->value());
            arguments.add(row.argument, markRefused(leaf._form, {editor}, [&] {
                              return renderCoefficients(getCoefficients(editor), normalizedCoefficientWidth(width));
                          }));
        }
        void operator()(const DescribedTable&) const {
            arguments.addLiteral(row.argument,
                                 leaf.find<DescribedTableView>(row.key)->toPython(leaf._form, row.argument));
        }

        const DescribedLeaf& leaf;
        ArgumentDictionary& arguments;
        const DescribedRow& row;
    };
    std::visit(Adder{*this, arguments, row}, row.kind);
}

QString DescribedLeaf::getText() const {
    return Brindle::locatedAt(BRINDLE_HERE, [this] { return _ipLeaf->getScript().generateText(getArguments()); });
}

GeneratedFiles DescribedLeaf::getFiles() const {
    return Brindle::locatedAt(BRINDLE_HERE, [this] { return _ipLeaf->getScript().generateFiles(getArguments()); });
}

Generation DescribedLeaf::getGeneration() const {
    Generation generation{_description.title,
                          find<QLineEdit>(entityKey)->text(),
                          FailureRules::filter,
                          [this] { return isFullyConfigured(); },
                          [this] { return getArguments(); },
                          {}};
    if (_description.isDirectory)
        generation.script = [this] { return markRefusals(_form, [this] { return getFiles(); }); };
    else
        generation.script = [this] { return markRefusals(_form, [this] { return getText(); }); };
    return generation;
}

void DescribedLeaf::onGenerate() {
    InteractiveGeneration(this, _form.getGroup(), getGeneration(), [this] { save(); }).run(BRINDLE_HERE);
}

} // namespace Velmora
