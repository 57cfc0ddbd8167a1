#include <support/Program.h>

#include <QRegularExpression>

namespace {

QStringList linesOf(const QByteArray& bytes) {
    return QString::fromUtf8(bytes.data(), bytes.size()).split('\n', Qt::SkipEmptyParts);
}

} // namespace

Program::Program(const TestPrefix& prefix) : _environment(QProcessEnvironment::systemEnvironment()) {
    set("QT_PLUGIN_PATH", VELMORA_PLUGIN_DIRECTORY);
    set("QT_QPA_GENERIC_PLUGINS", "velmoraprobe");
    set("ORVANE_PREFIX", prefix.path());
    setSettingsDirectory(prefix.path("config"));
}

void Program::setSettingsDirectory(const QString& path) {
    set("XDG_CONFIG_HOME", path);
}

QString Program::getSettingsPath() const {
    return _environment.value("XDG_CONFIG_HOME") + "/Orvane/Velmora.conf";
}

void Program::start(QProcess& process, const char* probe, const QStringList& arguments) const {
    QProcessEnvironment environment = _environment;
    environment.insert("VELMORA_PROBE", probe);
    process.setProcessEnvironment(environment);
    process.start(VELMORA_PROGRAM, arguments);
}

Program::Outcome Program::run(const char* probe, const QStringList& arguments) const {
    QProcess process;
    start(process, probe, arguments);
    if (!process.waitForFinished(-1) || process.exitStatus() != QProcess::NormalExit)
        return {-1, {}, {QString::fromUtf8(process.readAllStandardError())}};
    QStringList errors = linesOf(process.readAllStandardError());
    errors = errors.filter(QRegularExpression("^(?!QStandardPaths|This plugin does not support)")); // of the desktop
    return {process.exitCode(), linesOf(process.readAllStandardOutput()), errors};
}
