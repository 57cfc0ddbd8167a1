#include <velmora/catalogue/IPHandler.h>
#include <velmora/catalogue/IPLeaf.h>
#include <velmora/generation/ApplicationIdentity.h>
#include <velmora/window/MainWindow.h>

#include <QAbstractButton>
#include <QStackedWidget>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <vector>

// The first choice of each page of the installed catalogue until it is painted, the making of its view and form
// included.

namespace {

/// Tells that a page has been painted.
class PaintWatch : public QObject {
public:
    explicit PaintWatch(QObject* page) { page->installEventFilter(this); }

    bool isPainted() const { return _isPainted; }

protected:
    bool eventFilter(QObject* object, QEvent* event) override {
        _isPainted = _isPainted || event->type() == QEvent::Paint;
        return QObject::eventFilter(object, event);
    }

private:
    bool _isPainted = false;
};

/// Milliseconds from what shows the page until it is painted.
template <class Show>
double measure(Velmora::IPLeaf* page, Show show) {
    const PaintWatch watch(page);
    const auto start = std::chrono::steady_clock::now();
    show();
    while (!watch.isPainted())
        QCoreApplication::processEvents();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

} // namespace

int main(int argc, char** argv) {
    const auto application = Velmora::createApplication(argc, argv, true);
    const Velmora::MainWindow window;
    QCoreApplication::processEvents();
    auto* stack = window.findChild<QStackedWidget*>("leafStack");
    std::vector<double> times;
    for (Velmora::IPLeaf* page : Velmora::ipHandler->getIPLeaves()) {
        times.push_back(measure(page, [&] {
            stack->setCurrentWidget(page);
            window.findChild<QAbstractButton*>("IPs")->click();
        }));
    }
    const double first = times.front();
    std::ranges::sort(times);
    std::printf("%-46s %10s %10s %10s\n", "first choice of a page until painted", "first ms", "median ms", "most ms");
    std::printf("%-46s %10.1f %10.1f %10.1f (aim: at most 60)\n", "of each installed IP", first,
                times[times.size() / 2], times.back());
}
