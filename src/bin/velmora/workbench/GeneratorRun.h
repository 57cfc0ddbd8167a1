#pragma once

#include <QByteArray>
#include <QObject>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTimer>

#include <functional>
#include <optional>

namespace Velmora {

/// Runs velmora-generate, never twice at a time, and never waits for it. A run that takes longer than five seconds or
/// answers more than four megabytes is ended with all that it has started.
class GeneratorRun : public QObject {
    Q_OBJECT

public:
    /// What came of a run.
    struct Outcome {
        QString problem;     ///< Why it ended before its time; empty when it did not.
        QByteArray output;   ///< What it wrote to its standard output.
        QByteArray errors;   ///< What it wrote to its standard error, 64 kB at most.
        bool isDone = false; ///< Its exit status was 0.
    };
    using Receiver = std::function<void(const Outcome& outcome)>;

    /// `program` is the path of velmora-generate. It must have the version of this program. A problem begins with what
    /// is then missing, such as "No preview".
    GeneratorRun(const QString& program, const QString& missing, QObject* parent = nullptr);
    ~GeneratorRun() override;

    /// Runs it with these arguments and standard input as soon as the run before, which is ended and gets no answer, is
    /// gone. The receiver is called once, never from within `ask`.
    void ask(const QStringList& arguments, const QByteArray& input, const Receiver& receiver);
    /// Ends what runs; nobody gets an answer.
    void cancel();

private:
    struct Question {
        QStringList arguments;
        QByteArray input;
        Receiver receiver;
    };

    /// A process that leads a group, so that it can be ended with all that it has started, and ends with this program.
    class Process : public QProcess {
    public:
        using QProcess::QProcess;
        void endGroup();

    protected:
        void setupChildProcess() override;
    };

    void start();
    void startProcess(const QStringList& arguments, const QByteArray& input);
    void takeOutput();
    void takeErrors();
    void takeEnd();
    void takeVersion();
    void end(const QString& reason);
    QString getProblem(const QString& reason) const;
    void answer(const Outcome& outcome);

    const QString _program;
    const QString _missing;
    Process _process;
    QTimer _deadline;
    QTimer _start;
    std::optional<Question> _question; // that is asked or waits
    bool _isAsked = false;             // it is what runs
    bool _isVersionAsked = false;      // the version is what runs
    QString _checkedState;             // of the program file when its version was found to fit
    Outcome _outcome;
};

} // namespace Velmora
