#include "ApplicationTest.h"
#include "ConsoleWidgetTest.h"
#include "ObjectTest.h"
#include "PadTypeTest.h"
#include "TreeComboBoxTest.h"

#include <Quillon/Application.h>

#include <QTest>

namespace {

template <class Test>
int run(int argc, char** argv) {
    Test test;
    return QTest::qExec(&test, argc, argv);
}

} // namespace

int main(int argc, char** argv) {
    int failures = run<ApplicationTest>(argc, argv); // makes application objects of its own
    const auto application = Quillon::Application::create(argc, argv, "Velm", "Velmora", 1, 0, 0, true);
    failures += run<ObjectTest>(argc, argv);
    failures += run<PadTypeTest>(argc, argv);
    failures += run<TreeComboBoxTest>(argc, argv);
    failures += run<ConsoleWidgetTest>(argc, argv);
    return failures;
}
