#include <Brindle/core/Exception.h>

#include <QAbstractButton>
#include <QApplication>
#include <QGenericPlugin>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>

#include <cstdio>
#include <stdexcept>

namespace {

constexpr int dialogTime = 50; // ms between two looks for a dialog

/// Acts inside an unchanged program, in its event loop, as the environment variable VELMORA_PROBE says: "close" closes
/// the window, "title" prints the title of the current page and the name of the folio's checked button and closes the
/// window, "standard", "in-house" and "unrelated" throw an exception of that family out of a slot, "generate" types
/// "probed" as entity name, generates with the one form that there is, answering every dialog with what it proposes,
/// and closes the window.
class Probe : public QObject {
    Q_OBJECT

public:
    Probe() {
        const QByteArray action = qgetenv("VELMORA_PROBE");
        if (action == "generate")
            QTimer::singleShot(0, this, &Probe::generate);
        else
            QTimer::singleShot(0, this, [action] { act(action); });
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
        window->findChild<QAbstractButton*>(QStringLiteral("IPs"))->click();
        window->findChild<QLineEdit*>(QStringLiteral("Entity"))->setText(QStringLiteral("probed"));
        auto* answering = new QTimer(this);
        connect(answering, &QTimer::timeout, this, &Probe::answerDialog);
        answering->start(dialogTime);
        window->findChild<QPushButton*>(QStringLiteral("Generate"))->click();
        qApp->closeAllWindows();
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

    static QWidget* getMainWindow() {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (qobject_cast<QMainWindow*>(widget))
                return widget;
        }
        qFatal("there is no window");
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
