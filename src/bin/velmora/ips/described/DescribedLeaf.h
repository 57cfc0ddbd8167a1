#pragma once

#include <velmora/catalogue/GeneratorLeaf.h>
#include <velmora/form/Form.h>
#include <velmora/form/FormCheck.h>
#include <velmora/generation/ScriptAnswers.h>
#include <velmora/ips/described/FormDescription.h>
#include <velmora/rules/ArgumentDictionary.h>

#include <Brindle/core/Exception.h>

#include <QHash>
#include <QWidget>

#include <optional>
#include <string>

namespace Velmora {

class DescribedTableView;
class IPLeaf;
struct IPDescription;

/// The form of an IP that brings its description as data.
class DescribedLeaf : public QWidget, public GeneratorLeaf {
    Q_OBJECT

public:
    /// The IP leaf, kept and not owned, gives the script.
    DescribedLeaf(IPLeaf* ipLeaf, FormDescription description);
    ~DescribedLeaf() override;

    /// What the IP tells of its form. Throws what `readFormDescription` throws.
    static std::optional<FormDescription> readDescription(const IPDescription& ip);

    Form& getForm() final { return _form; }
    /// Tells the first thing that is wrong with the form, of which the script may know more; true when nothing is.
    bool isFullyConfigured() const;
    /// What the script is given. Throws Brindle::InvalidRequest for a text that cannot be passed, and what the
    /// rendering of coefficients throws.
    ArgumentDictionary getArguments() const {
        return Brindle::locatedAt(BRINDLE_HERE, [this] { return makeArguments(); });
    }
    /// Run the script on the form's values. Throw what the runner and `getArguments` throw.
    QString getText() const;
    GeneratedFiles getFiles() const;
    Generation getGeneration() const override;
    void load() { _form.load(); }
    void save() { _form.save(); }

public Q_SLOTS:
    void onReset() { _form.reset(); }
    void onGenerate();

private:
    void addRow(const DescribedRow& row);
    void addTable(const DescribedRow& row, const DescribedTable& table);
    void connectRow(const DescribedRow& row);
    void applyCondition(const DescribedRow& row);

    template <class Work>
    void forEachRow(Work work) const {
        for (const DescribedSection& section : _description.sections) {
            for (const DescribedRow& row : section.rows)
                work(row);
        }
    }
    template <class Editor>
    Editor* find(const std::string& key) const {
        return dynamic_cast<Editor*>(_widgets.value(QString::fromStdString(key)));
    }

    ArgumentDictionary makeArguments() const;
    void addArgument(ArgumentDictionary& arguments, const DescribedRow& row) const;
    void checkRow(FormCheck& check, const DescribedRow& row) const;
    bool passesScript() const;
    CheckedParts findParts(const QStringList& keys) const;
    void remarkCoefficients() const;

    IPLeaf* const _ipLeaf;
    const FormDescription _description;
    Form _form;
    QHash<QString, QWidget*> _widgets; // by the keys of the rows
};

} // namespace Velmora
