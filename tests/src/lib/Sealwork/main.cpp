#include "EncodingTest.h"
#include "EnvelopeOpenTest.h"
#include "EnvelopeTest.h"
#include "KeyringTest.h"
#include "ScriptTest.h"
#include "SealToolEnvelopeTest.h"
#include "SealToolTest.h"

#include <cstdlib>
#include <memory>

#include <QCoreApplication>
#include <QtTest>

template <typename... Tests>
int runAll(int argc, char** argv) {
    const auto run = [argc, argv](auto test) { return QTest::qExec(test.get(), argc, argv); };
    const int failureCount = (run(std::make_unique<Tests>()) + ...);
    return failureCount == 0 ? EXIT_SUCCESS : EXIT_FAILURE; // An exit status holds no more than 255.
}

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    return runAll<EncodingTest, KeyringTest, ScriptTest, EnvelopeTest, EnvelopeOpenTest, SealToolTest,
                  SealToolEnvelopeTest>(argc, argv);
}
