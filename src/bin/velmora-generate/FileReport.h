#pragma once

#include <velmora/rules/IPDescription.h>

#include <Brindle/core/ConsoleObserver.h>

#include <QJsonArray>
#include <QJsonObject>
#include <QString>

namespace GenerateTool {

/// What became of one configuration file, and what the console told about it while the report was made.
class FileReport : private Brindle::ConsoleObserver {
public:
    explicit FileReport(const QString& filename);

    void setIP(const Velmora::IPDescription& description);
    /// The file, directory or stream that was written.
    void setOutput(const QString& path);
    void setSucceeded(bool succeeded);

    /// "file", "ip", "output", "succeeded" and "messages", a list of objects with "kind" ("error", "remark" or "text")
    /// and "text". What is not known is missing.
    QJsonObject toJson() const;

private:
    void onConsoleLine(Brindle::ConsoleLineKind kind, const std::string& line) override;

    QJsonObject _facts;
    QJsonArray _messages;
};

} // namespace GenerateTool
