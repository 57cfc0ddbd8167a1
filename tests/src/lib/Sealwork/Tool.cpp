#include "Tool.h"

#include <stdexcept>

#include <QFile>
#include <QProcess>

ToolResult runTool(const QString& program, const QStringList& arguments, const QByteArray& input,
                   const QProcessEnvironment& environment) {
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(program, arguments);
    process.write(input);
    process.closeWriteChannel();
    const bool hasEnded = process.waitForFinished() && process.exitStatus() == QProcess::NormalExit;
    return {hasEnded ? process.exitCode() : -1, process.readAllStandardOutput(), process.readAllStandardError()};
}

QByteArray openssl(const QStringList& arguments, const QByteArray& input) {
    const auto result = runTool(QStringLiteral("openssl"), arguments, input);
    if (result.exitCode != 0)
        throw std::runtime_error("openssl " + arguments.join(QLatin1Char(' ')).toStdString() + ": " +
                                 result.errors.toStdString());
    return result.output;
}

ToolResult seal(const QStringList& arguments, const QByteArray& input, const QProcessEnvironment& environment) {
    return runTool(QStringLiteral(VELMORA_SEAL_PROGRAM), arguments, input, environment);
}

QStringList argumentsOf(const char* line, const QString& directory) {
    return QString::fromLatin1(line).replace(QLatin1Char('@'), directory).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

QByteArray contentOf(const QString& filename) {
    QFile file(filename);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
