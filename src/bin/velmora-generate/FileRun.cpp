#include <velmora-generate/FileRun.h>

#include <velmora-generate/JobRun.h>
#include <velmora-generate/JsonOutput.h>
#include <velmora-generate/NumberOptions.h>
#include <velmora-generate/OwnProcess.h>

#include <Brindle/core/Console.h>
#include <Brindle/core/Exception.h>

#include <exception>
#include <optional>

namespace GenerateTool {

namespace {

using Brindle::console;

constexpr int mostJobs = 64; // each takes some descriptors

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

/// The report that the JSON text holds; that of the failure to get it, otherwise.
QJsonObject getReport(const QString& filename, const std::function<QByteArray()>& getJson) {
    QByteArray json;
    const auto fetch = [&](const QString&, FileReport&) {
        json = getJson();
        return true;
    };
    const QJsonObject failure = getReport(filename, FileHandler(fetch));
    return json.isEmpty() ? failure : QJsonDocument::fromJson(json).object();
}

QByteArray getJson(const QString& filename, const FileHandler& handle) {
    return QJsonDocument(getReport(filename, handle)).toJson();
}

/// What becomes of all files.
class Reports {
public:
    explicit Reports(const Brindle::CommandLine& commandLine) {
        if (commandLine.has("json"))
            _json.emplace();
        else
            console.setQuiet(commandLine.has("quiet"));
    }

    /// Tells what becomes of a file; the function makes the report of it.
    QJsonObject add(const QString& filename, const std::function<QJsonObject()>& getReportOfFile) {
        console.print(filename.toStdString());
        console.indent();
        QJsonObject report = getReportOfFile();
        if (report.contains("output"))
            console.print("Written to " + report["output"].toString().toStdString());
        console.unindent();
        // Whose the errors above are, also where errors alone are shown.
        if (!report["succeeded"].toBool()) {
            console.error("Failed: " + filename.toStdString());
            _exitCode = ExitCode::Failed;
        }
        if (_json) // Of many files, they are much to keep.
            _reports += report;
        return report;
    }

    ExitCode finish() const {
        if (_json)
            _json->write(QJsonDocument(_reports));
        return _exitCode;
    }

private:
    std::optional<JsonOutput> _json;
    QJsonArray _reports;
    ExitCode _exitCode = ExitCode::Done;
};

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
    Reports reports(commandLine);
    for (const QString& filename : filenames)
        reports.add(filename, [&] { return getReport(filename, handle); });
    return reports.finish();
}

ExitCode runOnFilesApart(const QStringList& filenames, const Brindle::CommandLine& commandLine,
                         const FileHandler& handle, Output& output) {
    const int jobCount = findInteger(commandLine, "jobs", 1, mostJobs).value_or(1);
    if (filenames.size() == 1)
        return runOnFiles(filenames, commandLine, handle);
    Reports reports(commandLine);
    if (jobCount > 1) {
        const auto receive = [&](const QString& filename, OwnProcess& process) {
            reports.add(filename, [&] {
                return getReport(filename, [&] {
                    process.finish();
                    process.requireDone();
                    return process.getResult();
                });
            });
        };
        JobRun(jobCount, output, [&](const QString& filename) {
            return getJson(filename, handle);
        }).run(filenames, receive);
        return reports.finish();
    }
    for (const QString& filename : filenames) {
        const QJsonObject report = reports.add(filename, [&] {
            return getReport(filename, [&] { return runInOwnProcess([&] { return getJson(filename, handle); }); });
        });
        if (report.contains("output"))
            output.setTaken(report["output"].toString());
    }
    return reports.finish();
}

std::vector<Brindle::Option> getWritingOptions() {
    auto options = getFileOptions();
    options.push_back({"output", true, 'o'});
    options.push_back({"jobs", true, 'j'});
    return options;
}

} // namespace GenerateTool
