#include <velmora-generate/FileRun.h>

#include <velmora-generate/JsonOutput.h>
#include <velmora-generate/OwnProcess.h>

#include <Brindle/core/Console.h>
#include <Brindle/core/Exception.h>

#include <exception>
#include <optional>

namespace GenerateTool {

namespace {

using Brindle::console;

bool handleReporting(const QString& filename, FileReport& report, const FileHandler& handle) {
    try {
        return handle(filename, report);
    } catch (const Brindle::Exception& exception) {
        console.error(exception);
    } catch (const std::exception& exception) {
        console.error(exception.what());
    }
    return false;
}

QJsonObject getReport(const QString& filename, const FileHandler& handle) {
    FileReport report(filename);
    report.setSucceeded(handleReporting(filename, report, handle));
    return report.toJson();
}

QJsonObject getReportOfOwnProcess(const QString& filename, const FileHandler& handle) {
    QByteArray json;
    const auto fetch = [&](const QString&, FileReport&) {
        json = runInOwnProcess([&] { return QJsonDocument(getReport(filename, handle)).toJson(); });
        return true;
    };
    const QJsonObject failure = getReport(filename, fetch);
    return json.isEmpty() ? failure : QJsonDocument::fromJson(json).object();
}

using Reporter = QJsonObject (*)(const QString& filename, const FileHandler& handle);

QJsonObject runOnFile(const QString& filename, const FileHandler& handle, Reporter getReportOf) {
    console.print(filename.toStdString());
    console.indent();
    const QJsonObject report = getReportOf(filename, handle);
    if (report.contains("output"))
        console.print("Written to " + report["output"].toString().toStdString());
    console.unindent();
    // Whose the errors above are, also where errors alone are shown.
    if (!report["succeeded"].toBool())
        console.error("Failed: " + filename.toStdString());
    return report;
}

ExitCode runOnFiles(const QStringList& filenames, const Brindle::CommandLine& commandLine, const FileHandler& handle,
                    Reporter getReportOf, const std::function<void(const QString&)>& onWritten) {
    std::optional<JsonOutput> json;
    if (commandLine.has("json"))
        json.emplace();
    else
        console.setQuiet(commandLine.has("quiet"));
    QJsonArray reports;
    auto exitCode = ExitCode::Done;
    for (const QString& filename : filenames) {
        const QJsonObject report = runOnFile(filename, handle, getReportOf);
        if (report.contains("output"))
            onWritten(report["output"].toString());
        if (!report["succeeded"].toBool())
            exitCode = ExitCode::Failed;
        if (json) // Of many files, they are much to keep.
            reports += report;
    }
    if (json)
        json->write(QJsonDocument(reports));
    return exitCode;
}

} // namespace

std::vector<Brindle::Option> getFileOptions() {
    return {{"json", false}, {"quiet", false, 'q'}};
}

QStringList getFilenames(const Brindle::CommandLine& commandLine) {
    commandLine.requireOperands("The configuration file");
    QStringList filenames;
    for (const std::string& operand : commandLine.getOperands())
        filenames += QString::fromStdString(operand);
    return filenames;
}

ExitCode runOnFiles(const QStringList& filenames, const Brindle::CommandLine& commandLine, const FileHandler& handle) {
    return runOnFiles(filenames, commandLine, handle, getReport, [](const QString&) {});
}

ExitCode runOnFilesApart(const QStringList& filenames, const Brindle::CommandLine& commandLine,
                         const FileHandler& handle, const std::function<void(const QString& output)>& onWritten) {
    return runOnFiles(filenames, commandLine, handle, filenames.size() > 1 ? getReportOfOwnProcess : getReport,
                      onWritten);
}

} // namespace GenerateTool
