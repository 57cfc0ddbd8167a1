#include <velmora/workbench/Preview.h>

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace Velmora {

namespace {

QStringList toTexts(const QJsonValue& array) {
    QStringList texts;
    for (const QJsonValue text : array.toArray())
        texts += text.toString();
    return texts;
}

/// The first error; of a script's trace, the line that says what was raised.
QString getFirst(QStringList errors) {
    if (errors.value(0).startsWith(QLatin1String("Traceback"))) {
        do
            errors.removeFirst();
        while (errors.value(0).startsWith(QLatin1String("File ")));
    }
    return errors.value(0);
}

QString joinInstantiation(const QJsonObject& parts) {
    if (parts.isEmpty())
        return QString();
    QString text;
    for (const char* part : {"context", "declarations", "statements"}) {
        text += text.isEmpty() ? QString() : QStringLiteral("\n");
        text += QStringLiteral("-- %1\n%2").arg(QLatin1String(part), parts[QLatin1String(part)].toString());
    }
    return text;
}

Preview read(const QJsonObject& object) {
    Preview preview;
    const QJsonObject check = object["checked"].toObject();
    preview.error = check.isEmpty() ? getFirst(toTexts(object["errors"])) : check["message"].toString();
    preview.failedFields = toTexts(check["fields"]);
    preview.remarks = toTexts(object["remarks"]);
    for (const QJsonValue fact : object["facts"].toArray()) {
        const QString value = fact["value"].toVariant().toString() + " " + fact["unit"].toString();
        preview.facts.push_back({fact["label"].toString(), value.trimmed()});
    }
    preview.entity = object["entity"].toString();
    for (const QJsonValue port : object["ports"].toArray())
        preview.ports.push_back({port["name"].toString(), port["mode"].toString(), port["type"].toString()});
    preview.instantiation = joinInstantiation(object["instantiation"].toObject());
    for (const QJsonValue file : object["files"].toArray())
        preview.files.push_back({file["name"].toString(), file["text"].toString()});
    return preview;
}

} // namespace

Preview Preview::ofProblem(const QString& problem) {
    Preview preview;
    preview.problem = problem;
    return preview;
}

Preview Preview::parse(const QByteArray& json) {
    const QJsonObject object = QJsonDocument::fromJson(json)[0].toObject();
    if (!object["files"].isArray())
        return ofProblem(QCoreApplication::translate("Velmora::Preview", "No preview: velmora-generate gave none."));
    return read(object);
}

} // namespace Velmora
