#include <velmora-generate/JsonOutput.h>

#include <Brindle/core/Console.h>
#include <Brindle/core/Exception.h>

#include <QFile>

#include <unistd.h>

namespace GenerateTool {

JsonOutput::JsonOutput() : _standardOutput(dup(STDOUT_FILENO)) {
    dup2(STDERR_FILENO, STDOUT_FILENO);
    Brindle::console.setQuiet(true);
}

JsonOutput::~JsonOutput() {
    Brindle::console.setQuiet(false);
    dup2(_standardOutput, STDOUT_FILENO);
    close(_standardOutput);
}

void JsonOutput::write(const QJsonDocument& document) const {
    const QByteArray text = document.toJson();
    QFile output;
    if (!output.open(_standardOutput, QIODevice::WriteOnly) || output.write(text) != text.size() || !output.flush())
        throw Brindle::located(Brindle::Fatal("Unable to write to standard output"), BRINDLE_HERE);
}

} // namespace GenerateTool
