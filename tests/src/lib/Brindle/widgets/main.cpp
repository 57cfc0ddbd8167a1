#include "FileDialogTest.h"
#include "TableDelegateTest.h"
#include "ThemeTest.h"

#include <QApplication>
#include <QTest>

namespace {

template <class Test>
int run(int argc, char** argv) {
    Test test;
    return QTest::qExec(&test, argc, argv);
}

} // namespace

int main(int argc, char** argv) {
    QApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    const QApplication application(argc, argv);
    int failures = run<ThemeTest>(argc, argv);
    failures += run<FileDialogTest>(argc, argv);
    failures += run<TableDelegateTest>(argc, argv);
    return failures;
}
