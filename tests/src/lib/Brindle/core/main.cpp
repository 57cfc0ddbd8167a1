#include "CollectionTest.h"
#include "ConsoleTest.h"
#include "ExceptionTest.h"
#include "ForEachTest.h"
#include "LabelTest.h"
#include "LazinessTest.h"
#include <memory>

#include <QCoreApplication>
#include <QtTest>

template <typename... Tests>
int runAll(int argc, char** argv) {
    const auto run = [argc, argv](auto test) { return QTest::qExec(test.get(), argc, argv); };
    return (run(std::make_unique<Tests>()) + ...);
}

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    return runAll<CollectionTest, LazinessTest, ForEachTest, ConsoleTest, ExceptionTest, LabelTest>(argc, argv);
}
