#include <QApplication>
#include <QEvent>
#include <QGenericPlugin>
#include <QTimer>
#include <QWidget>

#include <cstdio>
#include <ctime>

namespace {

/// Prints the monotonic time in nanoseconds at which the first window of an unchanged program was painted, and ends
/// the process.
class FirstPaint : public QObject {
    Q_OBJECT

public:
    FirstPaint() { qApp->installEventFilter(this); }

protected:
    bool eventFilter(QObject* object, QEvent* event) override {
        if (event->type() == QEvent::Paint && object->isWidgetType() && static_cast<QWidget*>(object)->isWindow())
            QTimer::singleShot(0, this, &FirstPaint::reportTime); // once the whole window has been painted
        return false;
    }

private:
    static void reportTime() {
        std::timespec now{};
        clock_gettime(CLOCK_MONOTONIC, &now);
        std::printf("first-paint %lld\n", now.tv_sec * 1'000'000'000LL + now.tv_nsec);
        std::fflush(stdout);
        std::_Exit(0);
    }
};

} // namespace

class FirstPaintPlugin : public QGenericPlugin {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "first_paint.json")

public:
    QObject* create(const QString& name, const QString&) override {
        return name == QLatin1String("firstpaint") ? new FirstPaint : nullptr;
    }
};

#include "FirstPaintPlugin.moc"
