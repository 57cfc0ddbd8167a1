#pragma once

#include <QObject>

#include <sstream>

class ConsoleTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void lines_data();
    void lines();
    void longTexts_data();
    void longTexts();
    void exceptions_data();
    void exceptions();
    void errorsAreCounted();
    void logFile();
    void observers();
    void observersThatChangeWhileTheyAreTold();
    void timer();

private:
    std::ostringstream _output; // what reaches standard output
    std::ostringstream _errors; // what reaches standard error
    std::streambuf* _standardOutput = nullptr;
    std::streambuf* _standardError = nullptr;
};
