#include <bench/Least.h>
#include <support/TestPrefix.h>

#include <velmora/catalogue/IPLeaf.h>
#include <velmora/form/Form.h>
#include <velmora/generation/ApplicationIdentity.h>

#include <QLineEdit>

#include <cstdio>

// The page of an IP that describes its form, until it is painted: a form of 200 rows and ten tables of 32 lines beside
// the same page without a form.

namespace {

constexpr int rowCount = 200;
constexpr int tableCount = 10;
constexpr int roundCount = 10;

/// A number, a choice and texts in turn, in four sections, and tables with four columns.
QByteArray makeForm() {
    QStringList rows{
        R"({"key": "Entity", "kind": "text", "label": "Entity name", "argument": "%%ENTITY%%"},)"
        R"({"key": "Count", "kind": "number", "label": "Count", "minimum": 32, "maximum": 32, "argument": "%%COUNT%%"})"};
    const QStringList kinds{R"("number", "minimum": 0, "maximum": 100)", R"("text", "help": "Any text.")",
                            R"("choice", "items": [{"text": "One", "value": "1"}, {"text": "Two", "value": "2"}])",
                            R"("decimal", "minimum": 0, "maximum": 10, "decimals": 2)"};
    for (int section = 0; section < 4; ++section) {
        QStringList fields;
        for (int row = section; row < rowCount - 2; row += 4) {
            fields += QStringLiteral(R"({"key": "Field%1", "label": "Field %1", "argument": "%%F%1%%", "kind": %2})")
                          .arg(row)
                          .arg(kinds.at(row / 4 % kinds.size()));
        }
        rows += QStringLiteral(R"({"section": "Section %1", "rows": [%2]})").arg(section).arg(fields.join(','));
    }
    for (int table = 0; table < tableCount; ++table) {
        QStringList columns;
        for (int column = 0; column < kinds.size(); ++column)
            columns += QStringLiteral(R"({"title": "Column %1", "kind": %2})")
                           .arg(column)
                           .arg(QString(kinds.at(column)).remove(R"(, "help": "Any text.")"));
        rows += QStringLiteral(
                    R"({"key": "Table%1", "kind": "table", "count": "Count", "argument": "%%T%1%%", "columns": [%2]})")
                    .arg(table)
                    .arg(columns.join(','));
    }
    return R"({"title": "Generating", "result": "file", "rows": [)" + rows.join(",\n").toUtf8() + "]}";
}

/// Milliseconds until the page is painted, of a page that was never shown.
double measure(const QString& description) {
    std::unique_ptr<Velmora::IPLeaf> page;
    double least = 0;
    for (int round = 0; round < roundCount; ++round) {
        page = std::make_unique<Velmora::IPLeaf>(description.toStdString());
        page->resize(900, 800);
        const double time = leastOf(1, [&page] {
            page->show();
            page->repaint();
            QCoreApplication::processEvents();
        });
        least = round == 0 ? time : std::min(least, time);
    }
    return least;
}

} // namespace

int main(int argc, char** argv) {
    const auto application = Velmora::createApplication(argc, argv, true);
    const TestPrefix prefix;
    const QByteArray description = "name Made\ncategory C\nuid MADE\ncompany Made\nvariants V\nscript script.py\n";
    const QString bare = prefix.addIP("Made/bare", description);
    const QString described = prefix.addIP("Made/described", description);
    prefix.write("share/velmora/Made/described/form.json", makeForm());
    if (Velmora::IPLeaf(described.toStdString()).getForm()->getFields().size() != rowCount)
        qFatal("the form is not as it should be");
    const double bareTime = measure(bare);
    const double describedTime = measure(described);
    std::printf("%-46s %10s\n", "page that is shown first", "least ms");
    std::printf("%-46s %10.2f\n", "without form", bareTime);
    std::printf("%-46s %10.2f\n", "form of 200 rows and ten tables of 32 lines", describedTime);
}
