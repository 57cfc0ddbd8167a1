#include "Tool.h"

#include <stdexcept>

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

ToolResult runTool(const QString& program, const QStringList& arguments, const QByteArray& input) {
    QProcess process;
    process.start(program, arguments);
    process.write(input);
    process.closeWriteChannel();
    const bool hasEnded = process.waitForFinished(-1) && process.exitStatus() == QProcess::NormalExit;
    return {hasEnded ? process.exitCode() : -1, process.readAllStandardOutput(), process.readAllStandardError()};
}

QByteArray openssl(const QStringList& arguments, const QByteArray& input) {
    const auto result = runTool("openssl", arguments, input);
    if (result.exitCode != 0)
        throw std::runtime_error("openssl " + arguments.join(QLatin1Char(' ')).toStdString() + ": " +
                                 result.errors.toStdString());
    return result.output;
}

namespace {

ToolResult sealBy(const QString& program, QStringList arguments, const QString& line, const QString& directory,
                  const QByteArray& input) {
    arguments += QString(line).replace(QLatin1Char('@'), directory).split(QLatin1Char(' '), Qt::SkipEmptyParts);
    auto result = runTool(program, arguments, input);
    for (auto* text : {&result.output, &result.errors})
        text->replace(directory.toLocal8Bit(), "@");
    return result;
}

} // namespace

ToolResult seal(const QString& line, const QString& directory, const QByteArray& input) {
    return sealBy(QStringLiteral(VELMORA_SEAL_PROGRAM), {}, line, directory, input);
}

ToolResult sealFromShell(const QString& command, const QString& line, const QString& directory) {
    return sealBy("/bin/sh", {"-c", command, QStringLiteral(VELMORA_SEAL_PROGRAM)}, line, directory, {});
}

QByteArray madeUpRsaPem(const QByteArray& modulusHex, const QByteArray& exponentHex) {
    const QTemporaryDir directory;
    QFile configuration(directory.filePath("key.cnf"));
    configuration.open(QIODevice::WriteOnly);
    configuration.write("asn1=SEQUENCE:info\n[info]\nalgorithm=SEQUENCE:algorithm\nkey=BITWRAP,SEQUENCE:numbers\n"
                        "[algorithm]\nname=OID:rsaEncryption\nparameter=NULL\n[numbers]\nn=INTEGER:0x" +
                        modulusHex + "\ne=INTEGER:0x" + exponentHex + "\n");
    configuration.close();
    const auto der = directory.filePath("key.der");
    openssl({"asn1parse", "-genconf", configuration.fileName(), "-noout", "-out", der});
    QFile file(der);
    file.open(QIODevice::ReadOnly);
    return "-----BEGIN PUBLIC KEY-----\n" + file.readAll().toBase64() + "\n-----END PUBLIC KEY-----\n";
}
