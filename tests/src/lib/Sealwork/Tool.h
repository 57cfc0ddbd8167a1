#pragma once

#include <support/ReadFile.h>

#include <QByteArray>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

/// How a program that was run to its end behaved.
struct ToolResult {
    int exitCode = -1; ///< -1 when it did not start or crashed.
    QByteArray output;
    QByteArray errors;
};

ToolResult runTool(const QString& program, const QStringList& arguments, const QByteArray& input = {},
                   const QProcessEnvironment& environment = QProcessEnvironment::systemEnvironment());

/// The output of the `openssl` command; throws std::runtime_error with its errors when it fails.
QByteArray openssl(const QStringList& arguments, const QByteArray& input = {});

/// Runs velmora-seal.
ToolResult seal(const QStringList& arguments, const QByteArray& input = {},
                const QProcessEnvironment& environment = QProcessEnvironment::systemEnvironment());

/// The arguments of a line, split at blanks; "@" stands for the directory.
QStringList argumentsOf(const char* line, const QString& directory);

/// A PEM SubjectPublicKeyInfo of any RSA numbers, such as no key maker makes.
QByteArray madeUpRsaPem(const QByteArray& modulusHex, const QByteArray& exponentHex);
