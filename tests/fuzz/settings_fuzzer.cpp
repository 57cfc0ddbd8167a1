#include <fuzz/Property.h>
#include <support/FormText.h>
#include <support/TestPrefix.h>

#include <velmora/catalogue/IPLeaf.h>
#include <velmora/form/Form.h>
#include <velmora/generation/ApplicationIdentity.h>
#include <velmora/tables/LineTableView.h>
#include <velmora/window/MainWindow.h>

#include <Brindle/widgets/Theme.h>
#include <Quillon/Application.h>

#include <QDir>
#include <QSettings>

#include <array>
#include <cstdint>
#include <memory>

namespace {

constexpr std::array ipNames{"APB slave to serial master", "Mac fir", "Systolic", "Transpose",    "Transpose dual",
                             "Transpose symmetric",        "SER/DES", "Scope",    "Startup Scope"};

/// The application and an installation, which all inputs share.
class Fixture {
public:
    Fixture() : _application(Velmora::createApplication(_argc, _argv.data(), true)) {
        for (const char* name : ipNames) {
            const QByteArray description = QByteArray("category C\ncompany Orvane\nvariants V\nname ") + name + "\n";
            _descriptions += _prefix.write(QStringLiteral("forms/%1/config").arg(_descriptions.size()), description);
        }
    }

    std::unique_ptr<Velmora::IPLeaf> openForm(int index) const {
        return std::make_unique<Velmora::IPLeaf>(_descriptions.at(index).toStdString());
    }

    /// Makes the content that of the settings file, below a name of its own, because the settings are cached by name.
    void setSettings(const QByteArray& content) {
        QDir(_prefix.path(getFolder())).removeRecursively();
        ++_settingsNumber;
        _prefix.write(getFolder() + "/Orvane/Velmora.conf", content);
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, _prefix.path(getFolder()));
    }

private:
    QString getFolder() const { return QStringLiteral("settings%1").arg(_settingsNumber); }

    int _argc = 1;
    std::array<char, 8> _name{"fuzzer"};
    std::array<char*, 2> _argv{_name.data(), nullptr};
    std::unique_ptr<Quillon::Application> _application;
    TestPrefix _prefix;
    QStringList _descriptions;
    int _settingsNumber = 0;
};

/// What the fields and tables of a form show, by their names.
FormText::Values valuesOf(const Velmora::IPLeaf& page) {
    FormText::Values values = FormText::read(*page.getForm());
    for (const Velmora::FormTable& table : page.getForm()->getTables())
        values[table.view->objectName()] =
            FormText::cellsOf(*table.view, Velmora::LineTableModel::lineCount).join('\n');
    return values;
}

void checkForm(const Fixture& fixture, int index) {
    const FormText::Values first = valuesOf(*fixture.openForm(index)); // its end stores the values
    require(!first.isEmpty(), "every form has fields");
    require(valuesOf(*fixture.openForm(index)) == first, "a form comes back as it was left");
}

void checkWindow() {
    Brindle::theme = Brindle::Theme::getTheme(QSettings().value(QStringLiteral("theme")).toString());
    Velmora::MainWindow window;
    require(window.isVisible(), "the window opens whatever is stored");
    window.close();
}

} // namespace

/// The first character of the input is the number of a form, "9" means the window; the rest is the settings file.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static Fixture fixture;
    if (size == 0 || data[0] < '0' || data[0] > '9')
        return 0;
    fixture.setSettings(QByteArray(reinterpret_cast<const char*>(data) + 1, static_cast<int>(size - 1)));
    const int choice = data[0] - '0';
    if (choice < static_cast<int>(ipNames.size()))
        checkForm(fixture, choice);
    else
        checkWindow();
    return 0;
}
