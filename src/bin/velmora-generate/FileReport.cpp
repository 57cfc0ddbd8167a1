#include <velmora-generate/FileReport.h>

#include <velmora-generate/IPJson.h>

#include <Brindle/core/Console.h>

namespace GenerateTool {

namespace {

QString getName(Brindle::ConsoleLineKind kind) {
    switch (kind) {
    case Brindle::ConsoleLineKind::Error:
        return QStringLiteral("error");
    case Brindle::ConsoleLineKind::Remark:
        return QStringLiteral("remark");
    case Brindle::ConsoleLineKind::Failure:
    case Brindle::ConsoleLineKind::Text:
        break;
    }
    return QStringLiteral("text");
}

} // namespace

FileReport::FileReport(const QString& filename) : _facts{{"file", filename}} {
    Brindle::console.attach(*this);
}

void FileReport::setIP(const Velmora::IPDescription& description) {
    _facts["ip"] = GenerateTool::toJson(description);
}

void FileReport::setOutput(const QString& path) {
    _facts["output"] = path;
}

void FileReport::setSucceeded(bool succeeded) {
    _facts["succeeded"] = succeeded;
}

QJsonObject FileReport::toJson() const {
    QJsonObject object = _facts;
    object["messages"] = _messages;
    return object;
}

void FileReport::onConsoleLine(Brindle::ConsoleLineKind kind, const std::string& line) {
    _messages += QJsonObject{{"kind", getName(kind)}, {"text", QString::fromStdString(line).trimmed()}};
}

} // namespace GenerateTool
