#pragma once

#include <support/ConsoleRecorder.h>
#include <support/FormText.h>
#include <support/PathDialogs.h>
#include <support/TestPrefix.h>

#include <velmora/catalogue/IPLeaf.h>
#include <velmora/form/Form.h>

#include <memory>

/// The page of one of the program's own IPs, with a script of the test's, driven through its widgets.
class FormFixture {
public:
    /// Returns the arguments, one "key=value" a line, in the order of the keys.
    static const QByteArray echo;

    /// Every pad of a bank, "01P" first.
    static QStringList getPads();

protected:
    /// Makes an installation without IPs; sections unfold at once, and files go to "out.vhd".
    void begin();
    void end();

    /// Opens the page of the IP of that name; the page before, if any, is gone by then.
    void open(const QString& ipName, const QByteArray& script = echo, const QByteArray& uid = "UID");
    /// Takes a page that was made elsewhere.
    void open(std::unique_ptr<Velmora::IPLeaf> page) { _page = std::move(page); }
    /// Opens the page of the IP that the example is for, without its values; returns the example.
    Velmora::Configuration openFor(const QString& example, const QByteArray& script = echo);
    /// The same with the values of the example.
    void openFilled(const QString& example, const QByteArray& script = echo);
    void close() { _page.reset(); }

    Velmora::IPLeaf& page() const { return *_page; }
    /// The settings group, which is the object name of the form unless the IP describes it.
    QString group() const { return _page->getForm()->getGroup(); }
    QWidget* form() const {
        return _page->findChild<QWidget*>(group().startsWith("IP/") ? QStringLiteral("DescribedLeaf") : group());
    }
    template <class Editor>
    Editor* editor(const QString& name) const {
        return _page->findChild<Editor*>(name);
    }

    /// As `FormText::write` does it.
    void set(const FormText::Values& values) const { FormText::write(*_page->getForm(), values); }
    void set(const QString& values) const { FormText::write(*_page->getForm(), values); }
    /// The values of all fields, not those of tables.
    FormText::Values values() const { return FormText::read(*_page->getForm()); }
    /// The cells of the form's tables, as `FormText::cellsOf` gives them.
    QStringList cells(int rowCount = 32) const;
    void press(const char* button) const;
    /// Presses Generate; returns the lines of the console.
    QStringList generate() const;
    /// Whether the check of the form passes.
    bool check() const { return _page->getGeneration().check(); }
    /// The statement that gives the script its arguments; the date is "DATE".
    QString statement() const;
    /// Unfolds all sections in an active window.
    void showUnfolded(const QSize& size) const;

    std::unique_ptr<TestPrefix> _prefix;
    PathDialogs _dialog;

private:
    std::unique_ptr<Velmora::IPLeaf> _page;
};
