#include <velmora/window/AboutLeaf.h>

#include <velmora/widgets/SmoothImages.h>
#include <velmora/window/TitleLine.h>

#include <Brindle/core/Build.h>
#include <Brindle/widgets/Theme.h>
#include <Quillon/Application.h>

#include <QCoreApplication>
#include <QDateTime>
#include <QFileInfo>

namespace Velmora {

namespace {

/// When the running program was built.
QString getCompilationDate() {
    const QFileInfo executable(QCoreApplication::applicationFilePath());
    const QDateTime created =
        executable.birthTime().isValid() ? executable.birthTime() : executable.metadataChangeTime();
    return created.toString(QStringLiteral("d MMMM yyyy - hh:mm"));
}

QString versionRow(const QString& title, const QString& value) {
    return "<tr><td style=\"font-weight:bold; padding-right:25px;\">" + title + "</td><td>" + value + "</td></tr>";
}

QString versionSection() {
    QString html = "<div><p style=\"margin-left:25px; font-size:x-large;\">Version</p><hr>"
                   "<table style=\"margin-left:50px;\">";
    html += versionRow("Release", Quillon::application->getFullVersion());
    html += versionRow("Distribution", Quillon::application->getDistribution());
    if (Brindle::isDebug()) {
        html += versionRow("Compilation", getCompilationDate());
        html += versionRow("Svn revision", "12183");
    }
    return html + "</table></div><br><br>";
}

QString designersSection() {
    const auto designer = [](const char* name) { return QStringLiteral("<td width=50%>") + name + "</td>"; };
    return "<div><p style=\"margin-left: 25px; font-size:x-large;\">Designers</p><hr>"
           "<table style=\"margin-left:50px\"><tr>" +
           designer("Irene Castellan") + designer("Joris Vandaele") + "</tr><tr>" + designer("Maud Terrier") +
           designer("Tobias Lindqvist") + "</tr></table><br><br>"; // the division stays open on purpose
}

QString legalSection() {
    return "<div><p style=\"margin-left:25px; font-size:x-large;\">" + Quillon::application->getCopyright(true) +
           "</p><hr><div style=\"margin-left:50px\">" + Quillon::application->getDisclaimer() + "</div><br><br>";
}

QString image(const char* name) {
    return "<img src=\"" + Brindle::theme.getImagePath(name) + "\"/>";
}

} // namespace

AboutLeaf::AboutLeaf(QWidget* parent, TitleLine* titleLine) : QTextBrowser(parent), _titleLine(titleLine) {
    new SmoothImages(document());
    setHtml("<body><div><table><tr><td align=\"center\" width=100%>" + image("velmora") + "</td></tr></table></div>" +
            versionSection() + designersSection() + legalSection() +
            "<div><table style=\"margin-right:20px\"><tr><td align=\"right\" width=100%>" + image("logo-mid") +
            "</td></tr></table></div></body>");
    setReadOnly(true);
    setOpenExternalLinks(true);
    setFrameStyle(0);
    setAccessibleName(tr("About"));
}

void AboutLeaf::showEvent(QShowEvent* event) {
    _titleLine->setTitle(QStringLiteral("About"));
    QTextBrowser::showEvent(event);
}

} // namespace Velmora
