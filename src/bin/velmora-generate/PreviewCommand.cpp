#include <velmora-generate/Commands.h>

#include <velmora-generate/FileRun.h>
#include <velmora-generate/IPJson.h>
#include <velmora-generate/JsonOutput.h>
#include <velmora-generate/Preview.h>

#include <velmora/rules/HdlInstantiation.h>

#include <Brindle/core/Console.h>

#include <QJsonArray>
#include <QTextCodec>

#include <algorithm>
#include <ranges>
#include <string>
#include <variant>

namespace GenerateTool {

namespace {

using Brindle::console;
using Velmora::HdlObject;

constexpr std::string_view help = R"(Usage: velmora-generate preview FILE... [--json]

Shows what would be generated from configurations, and writes nothing: the facts
that the IP tells of the design, remarks, and the ports of its entity. FILE may
be - for standard input.

      --json  Write one JSON text, a list with an object for each file: "file",
              "ip", "succeeded", "facts" ("label", "value", "unit"), "remarks",
              "errors", "checked" (the failed check of the form: "message" and
              the keys of its "fields", else null), "entity" (null when there is
              none), "generics" and "ports" ("name", "mode", "type"),
              "instantiation" ("context", "declarations", "statements", else
              null) and "files" ("name", "text").

Exit status: 0 when all files would be generated, 1 when one would not, 2 for a
wrong command line.

Example: velmora-generate preview filter.velmora
)";

QString toText(const Velmora::FactValue& value) {
    if (const auto* number = std::get_if<long long>(&value))
        return QString::number(*number);
    if (const auto* number = std::get_if<double>(&value))
        return QString::number(*number);
    return std::get<QString>(value);
}

/// That of the widest; there is one at least.
auto getWidth(const auto& list, const auto& widthOf) {
    return std::ranges::max(list | std::views::transform(widthOf));
}

void showFact(const Velmora::Fact& fact, int width) {
    const QString line = fact.label.leftJustified(width + 2) + toText(fact.value) + " " + fact.unit;
    console.print(line.trimmed().toStdString());
}

void showPorts(const Velmora::HdlUnit& unit) {
    const auto nameWidth = getWidth(unit.ports, [](const auto& port) { return port.name.size(); });
    const auto modeWidth = getWidth(unit.ports, [](const auto& port) { return port.mode.size(); });
    for (const HdlObject& port : unit.ports) {
        console.print(port.name + std::string(nameWidth + 2 - port.name.size(), ' ') + port.mode +
                      std::string(modeWidth + 1 - port.mode.size(), ' ') + port.type);
    }
}

void showTitled(const std::string& title, const std::function<void()>& showLines) {
    console.print(title);
    console.indent();
    showLines();
    console.unindent();
}

void show(const Preview& preview) {
    if (!preview.facts.empty()) {
        const int width = getWidth(preview.facts, [](const auto& fact) { return fact.label.size(); });
        showTitled("Facts", [&] {
            for (const Velmora::Fact& fact : preview.facts)
                showFact(fact, width);
        });
    }
    if (!preview.remarks.isEmpty()) {
        showTitled("Remarks", [&] {
            for (const QString& remark : preview.remarks)
                console.print(remark.toStdString());
        });
    }
    if (preview.unit && !preview.unit->ports.empty())
        showTitled("Ports of " + preview.unit->name, [&] { showPorts(*preview.unit); });
}

QJsonValue toJson(const Velmora::FactValue& value) {
    if (const auto* number = std::get_if<long long>(&value))
        return qint64{*number};
    if (const auto* number = std::get_if<double>(&value))
        return *number;
    return std::get<QString>(value);
}

QJsonArray toJson(const std::vector<Velmora::Fact>& facts) {
    QJsonArray array;
    for (const Velmora::Fact& fact : facts)
        array += QJsonObject{{"label", fact.label}, {"value", toJson(fact.value)}, {"unit", fact.unit}};
    return array;
}

QJsonArray toJson(const std::vector<HdlObject>& objects) {
    QJsonArray array;
    for (const HdlObject& object : objects) {
        array += QJsonObject{{"name", QString::fromStdString(object.name)},
                             {"mode", QString::fromStdString(object.mode)},
                             {"type", QString::fromStdString(object.type)}};
    }
    return array;
}

/// A byte order mark stays, what is no UTF-8 becomes U+FFFD.
QString toUnicode(const std::string& bytes) {
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    return QTextCodec::codecForName("UTF-8")->toUnicode(bytes.data(), static_cast<int>(bytes.size()), &state);
}

QJsonArray toJson(const std::vector<GeneratedFile>& files) {
    QJsonArray array;
    for (const GeneratedFile& file : files)
        array += QJsonObject{{"name", file.name}, {"text", toUnicode(file.content)}};
    return array;
}

QJsonValue toJson(const std::optional<Velmora::FailedCheck>& check) {
    if (!check)
        return QJsonValue::Null;
    return QJsonObject{{"message", check->message}, {"fields", QJsonArray::fromStringList(check->keys)}};
}

QJsonValue getInstantiationJson(const std::optional<Velmora::HdlUnit>& unit) {
    const auto parts = unit ? Velmora::getInstantiation(*unit) : std::nullopt;
    if (!parts)
        return QJsonValue::Null;
    return QJsonObject{{"context", QString::fromStdString(parts->context)},
                       {"declarations", QString::fromStdString(parts->declarations)},
                       {"statements", QString::fromStdString(parts->statements)}};
}

QJsonObject toJson(const QString& filename, const Preview& preview) {
    const auto& unit = preview.unit;
    QJsonObject object{{"file", filename},
                       {"succeeded", preview.isGood},
                       {"facts", toJson(preview.facts)},
                       {"remarks", QJsonArray::fromStringList(preview.remarks)},
                       {"errors", QJsonArray::fromStringList(preview.errors)},
                       {"checked", toJson(preview.failedCheck)},
                       {"entity", unit ? QJsonValue(QString::fromStdString(unit->name)) : QJsonValue()},
                       {"generics", toJson(unit ? unit->generics : std::vector<HdlObject>())},
                       {"ports", toJson(unit ? unit->ports : std::vector<HdlObject>())},
                       {"instantiation", getInstantiationJson(unit)},
                       {"files", toJson(preview.files)}};
    if (preview.ip)
        object["ip"] = GenerateTool::toJson(*preview.ip);
    return object;
}

/// The preview of a file, during which the console shows errors alone.
Preview preview(const Catalogue& catalogue, const QString& filename) {
    console.setQuiet(true);
    Preview preview = makePreview(catalogue, filename);
    if (!preview.isGood)
        console.error("Failed: " + filename.toStdString());
    return preview;
}

ExitCode writeJson(const Catalogue& catalogue, const QStringList& filenames) {
    const JsonOutput output;
    auto exitCode = ExitCode::Done;
    QJsonArray array;
    for (const QString& filename : filenames) {
        const Preview found = preview(catalogue, filename);
        array += toJson(filename, found);
        if (!found.isGood)
            exitCode = ExitCode::Failed;
    }
    output.write(QJsonDocument(array));
    return exitCode;
}

ExitCode showAll(const Catalogue& catalogue, const QStringList& filenames) {
    auto exitCode = ExitCode::Done;
    for (const QString& filename : filenames) {
        const Preview found = preview(catalogue, filename);
        console.setQuiet(false);
        showTitled(filename.toStdString(), [&found] { show(found); });
        if (!found.isGood)
            exitCode = ExitCode::Failed;
    }
    return exitCode;
}

int run(const Brindle::CommandLine& commandLine) {
    const QStringList filenames = getFilenames(commandLine);
    const Catalogue catalogue;
    return commandLine.has("json") ? writeJson(catalogue, filenames) : showAll(catalogue, filenames);
}

} // namespace

const Brindle::Command previewCommand{"preview", "show what would be generated", help, {{"json", false}}, run};

} // namespace GenerateTool
