#include <Brindle/Exception.h>

#include <QApplication>
#include <QEvent>
#include <QGenericPlugin>
#include <QTimer>
#include <QWidget>

#include <cstdio>
#include <ctime>
#include <stdexcept>

namespace {

/// Acts inside an unchanged program, in its event loop, as the environment variable VELMORA_PROBE says: "close" closes
/// the window, "standard", "in-house" and "unrelated" throw an exception of that family out of a slot, and
/// "first-paint" prints the monotonic time in nanoseconds at which the first window was painted and ends the process.
class Probe : public QObject {
    Q_OBJECT

public:
    Probe() {
        const QByteArray action = qgetenv("VELMORA_PROBE");
        if (action == "first-paint")
            qApp->installEventFilter(this);
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
        if (action == "close")
            qApp->closeAllWindows();
        else if (action == "standard")
            throw std::runtime_error("standard text");
        else if (action == "in-house")
            throw Brindle::located(Brindle::Critical("in-house text"), BRINDLE_HERE);
        else
            throw 7;
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
