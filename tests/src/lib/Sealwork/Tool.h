#pragma once

#include <support/ReadFile.h>

#include <QByteArray>
#include <QString>
#include <QStringList>

/// How a program that was run to its end behaved.
struct ToolResult {
    int exitCode = -1; ///< -1 when it did not start or crashed.
    QByteArray output;
    QByteArray errors;
};

ToolResult runTool(const QString& program, const QStringList& arguments, const QByteArray& input = {});

/// The output of the `openssl` command; throws std::runtime_error with its errors when it fails.
QByteArray openssl(const QStringList& arguments, const QByteArray& input = {});

/// Runs velmora-seal on a line, which is split at blanks. "@" in it, and in what the program says, is the directory.
ToolResult seal(const QString& line, const QString& directory, const QByteArray& input = {});

/// The same from a shell, by a command that names the program and its arguments "$0" "$@".
ToolResult sealFromShell(const QString& command, const QString& line, const QString& directory);

/// A PEM SubjectPublicKeyInfo of any RSA numbers, such as no key maker makes.
QByteArray madeUpRsaPem(const QByteArray& modulusHex, const QByteArray& exponentHex);
