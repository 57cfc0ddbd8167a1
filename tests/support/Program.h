#pragma once

#include <support/TestPrefix.h>

#include <QProcess>
#include <QStringList>

/// The unchanged program as a process, with an installation, settings and a working directory of its own and with the
/// probe plugin in it.
class Program {
public:
    struct Outcome {
        int status = -1;    ///< Exit status; -1 when the program crashed.
        QStringList output; ///< Lines of the standard output.
        QStringList errors; ///< Lines of the standard error, without those of the desktop's libraries.
    };

    explicit Program(const TestPrefix& prefix);

    void set(const QString& variable, const QString& value) { _environment.insert(variable, value); }
    void unset(const QString& variable) { _environment.remove(variable); }
    /// Keeps the settings below the directory.
    void setSettingsDirectory(const QString& path);
    QString getSettingsPath() const;

    /// Starts the program, in which the probe does what its documentation says.
    void start(QProcess& process, const char* probe, const QStringList& arguments = {}) const;
    /// Runs it until it ends by itself or by what the probe does.
    Outcome run(const char* probe, const QStringList& arguments = {}) const;

private:
    QProcessEnvironment _environment;
};
