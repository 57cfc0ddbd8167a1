#include <bench/Least.h>
#include <support/TestPrefix.h>

#include <velmora/generation/ApplicationIdentity.h>
#include <velmora/window/MainWindow.h>

#include <QAbstractButton>
#include <QComboBox>
#include <QSortFilterProxyModel>
#include <QStandardItemModel>
#include <QTreeView>

#include <cstdio>

// Choosing another variant in the browser until the narrower tree is painted, at 1,000 IPs, beside a bare tree view
// with as many items and Qt's own filter.

namespace {

constexpr int ipCount = 1000;
constexpr int roundCount = 30;

/// Tells that a tree has been painted.
class PaintWatch : public QObject {
public:
    explicit PaintWatch(const QTreeView& tree) { tree.viewport()->installEventFilter(this); }

    void waitForPaint() {
        _isPainted = false;
        while (!_isPainted)
            QCoreApplication::processEvents();
    }

protected:
    bool eventFilter(QObject* object, QEvent* event) override {
        _isPainted = _isPainted || event->type() == QEvent::Paint;
        return QObject::eventFilter(object, event);
    }

private:
    bool _isPainted = false;
};

void addMadeIPs(const TestPrefix& prefix) {
    for (int number = 0; number < ipCount; ++number) {
        const QString description = "name Made %1\ncategory Group%2/Sub%3\ncompany Made\nvariants A%4 B%5\n";
        prefix.addIP(
            QStringLiteral("Made/ip%1").arg(number),
            description.arg(number).arg(number % 10).arg(number % 50).arg(number % 7).arg(number % 3).toUtf8());
    }
}

double measureBrowser() {
    const Velmora::MainWindow window;
    window.findChild<QAbstractButton*>("IPs")->click();
    QCoreApplication::processEvents();
    auto* combo = window.findChild<QComboBox*>("variantCombo");
    PaintWatch watch(*window.findChild<QTreeView*>("treeView"));
    const int choiceCount = combo->count() - 2; // without "All" and the separator
    int round = 0;
    return leastOf(roundCount, [&] {
        combo->setCurrentIndex(2 + round++ % choiceCount);
        watch.waitForPaint();
    });
}

double measureBareTree() {
    QStandardItemModel model;
    for (int group = 0; group < 10; ++group) {
        auto* item = new QStandardItem(QStringLiteral("Group%1").arg(group));
        for (int number = 0; number < ipCount / 10; ++number)
            item->appendRow(new QStandardItem(QStringLiteral("Made %1 A%2").arg(number).arg(number % 7)));
        model.appendRow(item);
    }
    QSortFilterProxyModel proxy;
    proxy.setRecursiveFilteringEnabled(true);
    proxy.setSourceModel(&model);
    QTreeView view;
    view.setModel(&proxy);
    view.expandAll();
    view.resize(300, 500);
    view.show();
    QCoreApplication::processEvents();
    PaintWatch watch(view);
    int round = 0;
    return leastOf(roundCount, [&] {
        proxy.setFilterFixedString(QStringLiteral("A%1").arg(round++ % 7));
        view.expandAll();
        watch.waitForPaint();
    });
}

} // namespace

int main(int argc, char** argv) {
    const auto application = Velmora::createApplication(argc, argv, true);
    const TestPrefix prefix;
    addMadeIPs(prefix);
    const double browser = measureBrowser();
    const double bareTree = measureBareTree();
    std::printf("%-46s %10s %10s\n", "filter of 1,000 IPs", "least ms", "ratio");
    std::printf("%-46s %10.2f %10.2f\n", "bare tree view and Qt's filter", bareTree, 1.0);
    std::printf("%-46s %10.2f %10.2f\n", "browser", browser, browser / bareTree);
}
