#include <support/ConsoleRecorder.h>
#include <support/FormText.h>
#include <support/PathDialogs.h>

#include <velmora/catalogue/IPLeaf.h>
#include <velmora/window/Product.h>

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPushButton>
#include <QSettings>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>

#include <cstdio>
#include <cstdlib>

// Generates with the program's own forms: form_driver JOBS.json RESULTS.json. A job names the IP (its directory below
// $ORVANE_PREFIX/share/velmora), the fields of its form by settings key and the file or directory to write; fields that
// it leaves out have their reset values; a table, by its object name, is a list of rows, each the texts of its cells
// from the second column on. A result is the list of the console's lines, errors as "E: text". What the form cannot be
// set to is an error of the job's author and ends the program.

namespace {

[[noreturn]] void fail(const QString& problem) {
    std::fprintf(stderr, "form_driver: %s\n", qPrintable(problem));
    std::exit(2);
}

QJsonArray readJobs(const QString& filename) {
    QFile file(filename);
    if (!file.open(QIODevice::ReadOnly))
        fail("cannot read " + filename);
    return QJsonDocument::fromJson(file.readAll()).array();
}

void setTable(const QTableView& table, const QJsonArray& rows) {
    QAbstractItemModel* model = table.model();
    if (rows.size() > model->rowCount())
        fail(table.objectName() + " shows too few rows");
    for (int row = 0; row < rows.size(); ++row) {
        const QJsonArray cells = rows.at(row).toArray();
        for (int column = 0; column < cells.size(); ++column)
            model->setData(model->index(row, column + 1), cells.at(column).toVariant());
    }
}

void setField(const Velmora::IPLeaf& page, const QString& key, const QJsonValue& value) {
    auto* editor = page.findChild<QWidget*>(key);
    if (!editor)
        fail("the form has no " + key);
    if (auto* table = qobject_cast<QTableView*>(editor)) {
        setTable(*table, value.toArray());
        return;
    }
    const QString wanted = value.toVariant().toString();
    FormText::setValue(editor, wanted);
    if (FormText::valueOf(editor) != wanted)
        fail(key + " cannot be " + wanted);
}

QJsonArray run(const QJsonObject& job) {
    const QString directory = qEnvironmentVariable("ORVANE_PREFIX") + "/share/velmora/" + job["ip"].toString();
    const Velmora::IPLeaf page((directory + "/config").toStdString());
    const auto press = [&page](const char* name) {
        auto* button = page.findChild<QPushButton*>(name);
        if (!button)
            fail("the IP has no form");
        QTest::mousePress(button, Qt::LeftButton);
    };
    press("Reset");
    // In this order: counts come before the tables that they size.
    for (const QJsonValue field : job["fields"].toArray())
        setField(page, field["key"].toString(), field["value"]);

    PathDialogs dialogs;
    dialogs.answer = job["output"].toString();
    const ConsoleRecorder recorder;
    press("Generate");
    return QJsonArray::fromStringList(recorder.lines());
}

} // namespace

int main(int argc, char** argv) {
    const auto application = Velmora::createApplication(argc, argv, true);
    if (argc != 3)
        fail("usage: form_driver JOBS.json RESULTS.json");
    const QTemporaryDir settings;
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, settings.path());
    QJsonArray results;
    for (const QJsonValue job : readJobs(argv[1]))
        results.append(run(job.toObject()));
    QFile file(argv[2]);
    if (!file.open(QIODevice::WriteOnly) || file.write(QJsonDocument(results).toJson()) < 0)
        fail(QStringLiteral("cannot write ") + argv[2]);
}
