#pragma once

#include <velmora/catalogue/SearchTerms.h>
#include <velmora/form/FormMemory.h>
#include <velmora/generation/Generation.h>
#include <velmora/generation/GeneratorScript.h>
#include <velmora/rules/Configuration.h>
#include <velmora/rules/IPDescription.h>

#include <Brindle/collections/Strings.h>

#include <QKeySequence>
#include <QSplitter>
#include <QUrl>
#include <QWidget>

#include <functional>
#include <optional>
#include <string>
#include <utility>

namespace Velmora {

class DescriptionPage;
class Form;
class FormArea;
class GeneratorLeaf;
class PageTabs;
struct IPForm;

/// The page of one IP: its HTML description above, its configuration form (when the IP is one that the program knows,
/// or describes its form itself) below. A described form is read and made when it is first needed, and so is all of a
/// page of a catalogue that may have a thousand of them: when it is shown, or asked for its form or what that holds.
class IPLeaf : public QWidget {
    Q_OBJECT

public:
    /// What the page is made of, and when. A program without a window needs no description, and its forms no memory.
    enum class Content { DescriptionAndForm, WhenNeeded, FormOnly };

    /// Reads the description file and builds the page. Throws Brindle::Critical when the file cannot be read or is
    /// wrong.
    explicit IPLeaf(const std::string& descriptionFilename, Content content = Content::DescriptionAndForm);

    /// Installs the configuration form, once; it becomes a child of the page. Throws Brindle::Critical for a null
    /// widget and for a second one.
    void setConfigurationWidget(QWidget* widget);

    const IPDescription& getDescription() const { return _description; }
    const std::string& getName() const { return _description.name; }
    const std::string& getUID() const { return _description.uid; }
    const std::string& getCompany() const { return _description.company; }
    const std::string& getCategory() const { return _description.category; }
    /// A view of the variants, valid as long as the leaf lives.
    Brindle::strings getVariants() const;
    /// Absolute path of the generator script; empty when the IP has none.
    const std::string& getScriptFilename() const { return _description.scriptFilename; }
    /// Throws what its constructor throws.
    GeneratorScript getScript() const { return _script ? *_script : GeneratorScript(getScriptFilename()); }
    /// Of an author who tries it before it is sealed. Only a described form runs it.
    void setScript(const GeneratorScript& script) { _script = script; }
    /// The name in lower case with every blank replaced by "_".
    std::string getEscapedName() const;

    bool isFromCompany(const std::string& company) const { return getCompany() == company; }
    bool isFromCategory(const std::string& category) const { return getCategory() == category; }
    bool isForVariant(const std::string& variant) const;
    /// Whether the user means the IP by the text, as `SearchTerms` has it. The page is read at the first call.
    bool isFoundBy(const QString& text) const;

    bool isOVSystolic() const { return isOurs("Systolic"); }
    bool isOVTranspose() const { return isOurs("Transpose"); }
    bool isOVTransposeDual() const { return isOurs("Transpose dual"); }
    bool isOVTransposeSymmetric() const { return isOurs("Transpose symmetric"); }
    bool isOVMacFir() const { return isOurs("Mac fir"); }
    bool isOVScope() const { return isOurs("Scope"); }
    bool isOVStartupScope() const { return isOurs("Startup Scope"); }
    bool isOVSERDES() const { return isOurs("SER/DES"); }
    bool isAPBToSPW() const { return isOurs("APB slave to serial master"); }

    /// Shows the IP whose description page a link leads to; false when it leads elsewhere.
    using PageOpener = std::function<bool(const QUrl& link)>;
    /// At first no link leads to another IP.
    void setPageOpener(PageOpener opener) { _pageOpener = std::move(opener); }
    /// How much of the page's height the form takes, in thousandths.
    void setFormShare(int share);

    /// Adds a tab beside the data sheet, which gets one with the first; the page becomes a child of the frame around
    /// the description.
    void addTab(const QString& title, const QKeySequence& shortcut, QWidget* page);
    /// Puts a line below description and form, once; it becomes a child of the page.
    void setSummary(QWidget* line);

    /// The configuration form; null for an IP that has none, for which what follows must not be called. Of a described
    /// form that is wrong the console is told, once; without a window Brindle::Critical is thrown instead.
    Form* getForm() const;
    /// True for an IP whose form is there or described, rightly or not: the description is not read.
    bool mayHaveForm() const;
    /// Throws Brindle::Critical when the description of the form is wrong. The form itself is not made.
    void requireGoodForm() const;
    /// Of a form that is made for the page.
    FormMemory getFormMemory() const { return _content == Content::FormOnly ? FormMemory::None : FormMemory::Kept; }
    /// What the form generates.
    Generation getGeneration() const;
    /// The IP and what its form holds.
    Configuration getConfiguration() const;
    /// Gives the form the values of a configuration of this IP: all of them, or none and a Brindle::Critical with the
    /// fields "filename" and "line". Throws what `setFormValues` throws, and the same for the configuration of another
    /// IP (by company, name and uid).
    void setConfiguration(const Configuration& configuration);

Q_SIGNALS:
    /// A field or a cell of the form has another value.
    void edited();
    /// Something in the form is marked as wrong.
    void refused();
    /// The user has changed the share of the form.
    void formShareChanged(int share);

public Q_SLOTS:
    /// Goes to a place in the description page, or to the page of another IP; opens any other link outside the program.
    void onLinkClicked(const QUrl& url);

protected:
    void showEvent(QShowEvent* event) override;
    /// A double click on the grip between description and form gives the form all the room, and another one takes it
    /// back.
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    bool isOurs(const char* name) const;
    void createPage();
    void completePage() const;
    void orderStops();
    void createDescriptionPage();
    void createForm();
    void createDescribedForm();
    void completeForm() const;
    void setForm(const IPForm& form);
    void showConfigurationWidget();
    void tellFormShare();

    const std::string _descriptionFilename;
    const IPDescription _description;
    const Content _content;
    std::optional<GeneratorScript> _script;
    QWidget* _configurationWidget = nullptr;
    GeneratorLeaf* _generatorLeaf = nullptr; // the same, unless it was set from outside
    QSplitter* _splitter = nullptr;
    DescriptionPage* _page = nullptr;
    PageTabs* _tabs = nullptr; // once there is more than the description
    FormArea* _formArea = nullptr;
    mutable std::function<void()> _makePage; // until the page is needed
    mutable std::function<void()> _makeForm; // until the form is needed
    std::optional<int> _formShare;           // that the form is to have when it is made
    PageOpener _pageOpener = [](const QUrl&) { return false; };
    QByteArray _lastSplit;                           // before the form got all the room
    mutable std::optional<SearchTerms> _searchTerms; // once they were asked for
};

} // namespace Velmora
