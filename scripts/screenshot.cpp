#include <velmora/generation/ApplicationIdentity.h>
#include <velmora/window/FileMenu.h>
#include <velmora/window/MainWindow.h>

#include <Brindle/widgets/FileDialog.h>

#include <QAbstractButton>
#include <QStackedWidget>
#include <QTabBar>
#include <QTimer>
#include <QToolButton>

// Saves a picture of the window: velmora_screenshot PAGE WIDTH HEIGHT PICTURE [CONFIGURATION [TAB]]. With a
// configuration its IP is shown with all sections open, and has been generated into the working directory; the tab is
// the index of one above the form.

namespace {

constexpr int settlingTime = 3000; // ms that a page gets to load and draw itself, and a preview to come

void generateFrom(const QString& configuration, const QWidget& window) {
    window.findChild<Velmora::FileMenu*>()->open({configuration});
    const QWidget* leaf = window.findChild<QStackedWidget*>(QStringLiteral("leafStack"))->currentWidget();
    for (auto* section : leaf->findChildren<QToolButton*>()) {
        if (section->isCheckable() && !section->isChecked())
            section->click();
    }
    Brindle::FileDialog::setSaveFileNameFunction([](auto&&...) { return QStringLiteral("generated.vhd"); });
    Brindle::FileDialog::setDirectoryFunction([](auto&&...) { return QStringLiteral("generated"); });
    leaf->findChild<QAbstractButton*>(QStringLiteral("Generate"))->click();
}

} // namespace

int main(int argc, char** argv) {
    const auto application = Velmora::createApplication(argc, argv, true);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() < 5)
        qFatal("usage: velmora_screenshot PAGE WIDTH HEIGHT PICTURE [CONFIGURATION [TAB]]");
    Velmora::MainWindow window;
    window.resize(arguments.at(2).toInt(), arguments.at(3).toInt());
    window.findChild<QAbstractButton*>(arguments.at(1))->click();
    if (arguments.size() > 5)
        generateFrom(arguments.at(5), window);
    if (arguments.size() > 6) {
        const QWidget* leaf = window.findChild<QStackedWidget*>(QStringLiteral("leafStack"))->currentWidget();
        leaf->findChild<QTabBar*>(QStringLiteral("pageTabs"))->setCurrentIndex(arguments.at(6).toInt());
    }
    QTimer::singleShot(settlingTime, &window, [&] {
        if (!window.grab().save(arguments.at(4)))
            qFatal("the picture cannot be saved");
        window.close();
    });
    return Quillon::Application::exec();
}
