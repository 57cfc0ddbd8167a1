#include <support/FormText.h>
#include <support/TestPrefix.h>

#include <velmora/catalogue/IPHandler.h>
#include <velmora/catalogue/IPLeaf.h>
#include <velmora/catalogue/PageTabs.h>
#include <velmora/form/Form.h>
#include <velmora/generation/ApplicationIdentity.h>
#include <velmora/window/Folio.h>
#include <velmora/window/MainWindow.h>
#include <velmora/workbench/HdlView.h>
#include <velmora/workbench/TextButton.h>

#include <QElapsedTimer>
#include <QThread>

#include <algorithm>
#include <cstdio>

// What an edit of a filter of 160 coefficients costs the window's thread, whose event loop is turned by hand: the
// longest turn until the child process runs, which holds the edit's timer and the start, and the longest from then
// until its result is painted. And how long it takes from the edit, of which 200 ms are waited, until the result is
// there.

namespace {

constexpr int coefficientCount = 160;
constexpr int roundCount = 20;
constexpr int longestWait = 20'000; // ms
constexpr int longestPause = 250;   // ms after an edit, by the end of which the child has been started

/// The longest turn of the event loop in ms while the condition holds.
template <class Condition>
double getLongestTurn(Condition holds) {
    qint64 longest = 0;
    while (holds()) {
        QElapsedTimer turn;
        turn.start();
        QCoreApplication::processEvents();
        longest = std::max(longest, turn.nsecsElapsed());
        QThread::usleep(100);
    }
    return static_cast<double>(longest) / 1e6;
}

QString getCoefficients(int first) {
    QStringList coefficients;
    for (int index = 0; index < coefficientCount; ++index)
        coefficients += QString::number(index == 0 ? first : index % 100);
    return coefficients.join(',');
}

double getMedian(std::vector<double> values) {
    std::ranges::sort(values);
    return values[values.size() / 2];
}

void show(const char* name, const std::vector<double>& values) {
    std::printf("%-46s %10.2f %10.2f %10.2f\n", name, std::ranges::min(values), getMedian(values),
                std::ranges::max(values));
}

} // namespace

int main(int argc, char** argv) {
    const QByteArray catalogue = qgetenv("ORVANE_PREFIX");
    const auto application = Velmora::createApplication(argc, argv, true);
    const TestPrefix settings; // of this run
    qputenv("ORVANE_PREFIX", catalogue);
    const Velmora::MainWindow window;
    const auto leaves = Velmora::ipHandler->getIPLeaves();
    Velmora::IPLeaf* leaf = *std::ranges::find_if(leaves, [](const auto* each) { return each->isOVMacFir(); });
    window.findChild<Velmora::Folio*>()->showIP(leaf);
    leaf->findChild<Velmora::PageTabs*>()->setCurrentIndex(1);
    const auto* view = leaf->findChild<Velmora::HdlView*>();

    std::vector<double> starts;
    std::vector<double> results;
    std::vector<double> waits;
    for (int round = 0; round < roundCount + 1; ++round) {
        const QString shown = view->toPlainText();
        FormText::write(*leaf->getForm(), "Entity=mac;TapCount=160;CoefficientWidth=10;InputDataWidth=12;"
                                          "OutputDataWidth=16;DSPCount=2;Coefficients=" +
                                              getCoefficients(round + 1));
        QElapsedTimer clock;
        clock.start();
        const double start =
            getLongestTurn([&] { return clock.elapsed() < longestPause && view->toPlainText() == shown; });
        const double result = getLongestTurn([&] {
            if (clock.elapsed() > longestWait)
                qFatal("no preview comes: %s", qPrintable(leaf->findChild<Velmora::TextButton*>()->getText()));
            return view->toPlainText() == shown;
        });
        if (round > 0) { // the first one loads the highlighting
            starts.push_back(start);
            results.push_back(result);
            waits.push_back(static_cast<double>(clock.nsecsElapsed()) / 1e6);
        }
    }
    std::printf("%-46s %10s %10s %10s\n", "longest turn of the window's thread", "min ms", "median ms", "max ms");
    show("edit of 160 coefficients to start of child", starts);
    show("its result until it is painted", results);
    show("edit until the result is there, whole", waits);
}
