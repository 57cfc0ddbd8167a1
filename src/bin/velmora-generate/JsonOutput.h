#pragma once

#include <velmora-generate/ReservedOutput.h>

#include <QJsonDocument>

namespace GenerateTool {

/// Lets a program read the standard output: it gets one JSON text and nothing else. While it lives, the console shows
/// errors and remarks alone.
class JsonOutput {
public:
    JsonOutput();
    JsonOutput(const JsonOutput&) = delete;
    JsonOutput& operator=(const JsonOutput&) = delete;
    ~JsonOutput();

    /// Throws Brindle::Fatal when it cannot be written.
    void write(const QJsonDocument& document) const;

private:
    const ReservedOutput _output;
};

} // namespace GenerateTool
