#include <support/TestPrefix.h>

#include <support/ReadFile.h>

#include <Sealwork/keys/AsymmetricKey.h>
#include <Sealwork/script/ScriptSealer.h>

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QSettings>

namespace {

/// Making a key takes long, so that all prefixes of a test program share one.
const Sealwork::AsymmetricKey& recipientKey() {
    static const Sealwork::AsymmetricKey key = Sealwork::AsymmetricKey::makeRsa(2048);
    return key;
}

/// Where the catalogue describes the form of the IP of that name; empty for an IP that the program knows.
QString findShippedForm(const QString& ipName) {
    for (QDirIterator form(VELMORA_CATALOGUE, {"form.json"}, QDir::Files, QDirIterator::Subdirectories);
         form.hasNext();) {
        form.next();
        if (readFile(form.fileInfo().path() + "/config").startsWith("name " + ipName.toUtf8() + "\n"))
            return form.filePath();
    }
    return {};
}

} // namespace

TestPrefix::TestPrefix() : _earlierWorkingDirectory(QDir::currentPath()), _scriptKey(Sealwork::ScriptKey::make()) {
    if (!_directory.isValid())
        qFatal("there is no temporary directory");
    write("etc/velmora/seal/scripts/" + QString::fromStdString(_scriptKey.getFileName()),
          bytesOf(_scriptKey.getText()));
    write(QStringLiteral("etc/velmora/seal/recipients/test.pem"),
          "Key-Owner: Velmora\nKey-Name: test\n" + QByteArray::fromStdString(recipientKey().getPublicPem()));
    write(QStringLiteral("recipient-private.pem"), bytesOf(recipientKey().getPrivatePem()));
    QDir().mkpath(path(QStringLiteral("etc/velmora/seal/signers")));
    QDir().mkpath(path(QStringLiteral("share/velmora")));
    qputenv("ORVANE_PREFIX", QFile::encodeName(path()));
    qunsetenv("VELMORA_SEAL_DIR");
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, path(QStringLiteral("settings")));
    QDir::setCurrent(path());
}

TestPrefix::~TestPrefix() {
    QDir::setCurrent(_earlierWorkingDirectory);
}

QString TestPrefix::write(const QString& relativePath, const QByteArray& content) const {
    const QString filename = path(relativePath);
    QDir().mkpath(QFileInfo(filename).path());
    QFile file(filename);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("cannot write %s", qPrintable(filename));
    return filename;
}

QByteArray TestPrefix::seal(const QByteArray& script) const {
    return QByteArray::fromStdString(Sealwork::ScriptSealer(_scriptKey).seal(script.toStdString()));
}

QString TestPrefix::writeScript(const QString& relativePath, const QByteArray& script) const {
    return write(relativePath, seal(script));
}

QString TestPrefix::addIP(const QString& directory, const QByteArray& description) const {
    return write("share/velmora/" + directory + "/config", description);
}

QString TestPrefix::addKnownIP(const QString& name, const QByteArray& script, const QByteArray& furtherLines) const {
    const QString directory = "Orvane/" + QString(name).replace('/', '_');
    writeScript("share/velmora/" + directory + "/generator.py", script);
    if (const QString form = findShippedForm(name); !form.isEmpty())
        QFile::copy(form, path("share/velmora/" + directory + "/form.json"));
    return addIP(directory, "name " + name.toUtf8() +
                                "\ncategory C\nuid UID\ncompany Orvane\nvariants V\nscript generator.py\n" +
                                furtherLines);
}

QByteArray bytesOf(const Sealwork::SecureBuffer& buffer) {
    return QByteArray(reinterpret_cast<const char*>(buffer.data()), static_cast<int>(buffer.size()));
}
