#pragma once

#include <support/Patience.h>

#include <Quillon/Application.h>

#include <QTest>

/// The entry point of a test program that needs the program's own application object.
#define VELMORA_TEST_MAIN(TestClass)                                                                                   \
    int main(int argc, char** argv) {                                                                                  \
        const auto application = Quillon::Application::create(argc, argv, "Velm", "Velmora", 1, 0, 0, true);           \
        TestClass test;                                                                                                \
        return QTest::qExec(&test, argc, argv);                                                                        \
    }
