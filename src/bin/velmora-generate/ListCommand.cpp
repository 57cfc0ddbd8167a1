#include <velmora-generate/Commands.h>

#include <velmora-generate/Catalogue.h>
#include <velmora-generate/ExitCode.h>
#include <velmora-generate/IPJson.h>
#include <velmora-generate/JsonOutput.h>

#include <velmora/catalogue/IPForms.h>

#include <Brindle/core/Console.h>

#include <QJsonArray>

#include <algorithm>
#include <vector>

namespace GenerateTool {

namespace {

constexpr std::string_view help = R"(Usage: velmora-generate list [--json]

Shows the installed IPs: name, category, company and variants. A wrong
description, of an IP or of its form, is an error.

      --json  Write one JSON text, a list of objects that also hold the uid.

Example: velmora-generate list
)";

QStringList toCells(const Velmora::IPDescription& description) {
    QStringList variants;
    for (const std::string& variant : description.variants)
        variants += QString::fromStdString(variant);
    return {QString::fromStdString(description.name), QString::fromStdString(description.category),
            QString::fromStdString(description.company), variants.join(' ')};
}

void printTable(const std::vector<InstalledIP>& ips) {
    std::vector<QStringList> rows{{"Name", "Category", "Company", "Variants"}};
    for (const InstalledIP& ip : ips)
        rows.push_back(toCells(ip.description));
    for (const QStringList& row : rows) {
        QString line;
        for (int column = 0; column + 1 < row.size(); ++column) {
            const auto widest = std::ranges::max(rows, {}, [column](const QStringList& r) { return r[column].size(); });
            line += row[column].leftJustified(widest[column].size() + 2);
        }
        Brindle::console.print((line + row.last()).toStdString());
    }
}

/// The console is told of an IP whose description of a form is wrong.
void checkForm(const InstalledIP& ip) {
    if (!Velmora::bringsForm(ip.description))
        return;
    try {
        Velmora::IPLeaf(ip.descriptionFilename, Velmora::IPLeaf::Content::FormOnly).requireGoodForm();
    } catch (const Brindle::Critical& exception) {
        Brindle::console.error(exception);
    }
}

int run(const Brindle::CommandLine& commandLine) {
    commandLine.requireNoOperand();
    const unsigned long errorCount = Brindle::console.getErrorCount();
    const Catalogue catalogue;
    const std::vector<InstalledIP>& ips = catalogue.getAll();
    std::ranges::for_each(ips, checkForm);
    if (commandLine.has("json")) {
        QJsonArray objects;
        for (const InstalledIP& ip : ips)
            objects += toJson(ip.description);
        JsonOutput().write(QJsonDocument(objects));
    } else {
        printTable(ips);
    }
    return Brindle::console.getErrorCount() == errorCount ? ExitCode::Done : ExitCode::Failed;
}

} // namespace

const Brindle::Command listCommand{"list", "show the installed IPs", help, {{"json", false}}, run};

} // namespace GenerateTool
