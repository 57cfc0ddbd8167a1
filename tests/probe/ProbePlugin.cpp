#include <Brindle/core/Exception.h>

#include <QAbstractButton>
#include <QApplication>
#include <QDropEvent>
#include <QFile>
#include <QGenericPlugin>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>
#include <QStackedWidget>
#include <QTimer>
#include <QToolButton>
#include <QUrl>
#include <QWindow>

#include <cstdio>
#include <ctime>
#include <stdexcept>

namespace {

constexpr int dialogTime = 50;     // ms between two looks for a dialog
constexpr int settlingTime = 1500; // ms that a page gets to load and draw itself

/// Acts inside an unchanged program, in its event loop, as the environment variable VELMORA_PROBE says: "close" closes
/// the window, "title" prints the title of the current page and the name of the folio's checked button and closes the
/// window, "standard", "in-house" and "unrelated" throw an exception of that family out of a slot, "generate" types
/// "probed" as entity name, generates with the one form that there is, answering every dialog with what it proposes,
/// and closes the window, "screenshot" saves a picture of the window of the size VELMORA_PROBE_SIZE on the page
/// VELMORA_PROBE_PAGE as VELMORA_PROBE_FILE, having generated from the file VELMORA_PROBE_CONFIGURATION if that is
/// given, and "first-paint" prints the monotonic time in nanoseconds at which the first window was painted; these two
/// end the process.
class Probe : public QObject {
    Q_OBJECT

public:
    Probe() {
        const QByteArray action = qgetenv("VELMORA_PROBE");
        if (action == "first-paint")
            qApp->installEventFilter(this);
        else if (action == "generate")
            QTimer::singleShot(0, this, &Probe::generate);
        else if (action == "screenshot")
            QTimer::singleShot(0, this, &Probe::prepareScreenshot);
        else
            QTimer::singleShot(0, this, [action] { act(action); });
    }

protected:
    bool eventFilter(QObject* object, QEvent* event) override {
        if (event->type() == QEvent::Paint && object->isWidgetType() && static_cast<QWidget*>(object)->isWindow())
            QTimer::singleShot(0, this, &Probe::reportTime); // once the whole window has been painted
        return false;
    }

private:
    static void act(const QByteArray& action) {
        if (action == "title")
            printTitle();
        if (action == "close" || action == "title")
            qApp->closeAllWindows();
        else if (action == "standard")
            throw std::runtime_error("standard text");
        else if (action == "in-house")
            throw Brindle::located(Brindle::Critical("in-house text"), BRINDLE_HERE);
        else
            throw 7;
    }

    static void printTitle() {
        const QWidget* folio = getMainWindow()->findChild<QWidget*>(QStringLiteral("Folio"));
        std::printf("%s\n", qPrintable(folio->findChild<QLabel*>(QStringLiteral("titleLabel"))->text()));
        for (const char* name : {"IPs", "About", "Settings"}) {
            if (folio->findChild<QAbstractButton*>(QLatin1String(name))->isChecked())
                std::printf("%s\n", name);
        }
    }

    void generate() {
        const QWidget* window = getMainWindow();
        window->findChild<QLineEdit*>(QStringLiteral("Entity"))->setText(QStringLiteral("probed"));
        pressGenerate(window);
        qApp->closeAllWindows();
    }

    /// Generates with a form below the widget; every dialog is answered with what it proposes, or "generated.vhd" in
    /// the working directory.
    void pressGenerate(const QWidget* widget) {
        auto* answering = new QTimer(this);
        connect(answering, &QTimer::timeout, this, &Probe::answerDialog);
        answering->start(dialogTime);
        widget->findChild<QPushButton*>(QStringLiteral("Generate"))->click();
    }

    static void answerDialog() {
        QWidget* dialog = QApplication::activeModalWidget();
        if (const auto* question = qobject_cast<QMessageBox*>(dialog))
            question->button(QMessageBox::Yes)->click();
        else if (auto* name = dialog ? dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit")) : nullptr;
                 name && name->text().isEmpty())
            name->setText(QStringLiteral("generated.vhd"));
        else if (dialog)
            QMetaObject::invokeMethod(dialog, "accept", Qt::QueuedConnection); // it may ask, and the timer must go on
    }

    void prepareScreenshot() {
        QWidget* window = getMainWindow();
        const QStringList size = QString::fromLatin1(qgetenv("VELMORA_PROBE_SIZE")).split('x');
        window->resize(size.at(0).toInt(), size.at(1).toInt());
        window->findChild<QAbstractButton*>(QString::fromLatin1(qgetenv("VELMORA_PROBE_PAGE")))->click();
        if (const QString configuration = QFile::decodeName(qgetenv("VELMORA_PROBE_CONFIGURATION"));
            !configuration.isEmpty())
            generateFrom(configuration, window);
        QTimer::singleShot(settlingTime, this, &Probe::saveScreenshot);
    }

    /// Drops the configuration on the window, opens the sections of the form and has it generated.
    void generateFrom(const QString& configuration, QWidget* window) {
        QMimeData files;
        files.setUrls({QUrl::fromLocalFile(configuration)});
        QDropEvent drop(QPointF(), Qt::CopyAction, &files, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(window->windowHandle(), &drop);
        QWidget* leaf = window->findChild<QStackedWidget*>(QStringLiteral("leafStack"))->currentWidget();
        for (auto* section : leaf->findChildren<QToolButton*>()) {
            if (section->isCheckable() && !section->isChecked())
                section->click();
        }
        pressGenerate(leaf);
    }

    static void saveScreenshot() {
        if (!getMainWindow()->grab().save(QFile::decodeName(qgetenv("VELMORA_PROBE_FILE"))))
            qFatal("the screenshot cannot be saved");
        std::_Exit(0);
    }

    static QWidget* getMainWindow() {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (qobject_cast<QMainWindow*>(widget))
                return widget;
        }
        qFatal("there is no window");
    }

    static void reportTime() {
        std::timespec now{};
        clock_gettime(CLOCK_MONOTONIC, &now);
        std::printf("first-paint %lld\n", now.tv_sec * 1'000'000'000LL + now.tv_nsec);
        std::fflush(stdout);
        std::_Exit(0);
    }
};

} // namespace

class ProbePlugin : public QGenericPlugin {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "probe.json")

public:
    QObject* create(const QString& name, const QString&) override {
        return name == QLatin1String("velmoraprobe") ? new Probe : nullptr;
    }
};

#include "ProbePlugin.moc"
