#include <velmora/workbench/GeneratorRun.h>

#include <velmora/rules/Version.h>

#include <QDateTime>
#include <QFileInfo>

#include <csignal>
#include <sys/prctl.h>
#include <unistd.h>
#include <utility>

namespace Velmora {

namespace {

constexpr int longestRun = 5000;               // ms
constexpr int largestOutput = 4 * 1024 * 1024; // bytes
constexpr int mostErrors = 64 * 1024;          // bytes

/// Changes when the file does.
QString getState(const QString& program) {
    const QFileInfo file(program);
    return QStringLiteral("%1 %2").arg(file.size()).arg(file.lastModified().toMSecsSinceEpoch());
}

} // namespace

void GeneratorRun::Process::setupChildProcess() {
    setpgid(0, 0);
    prctl(PR_SET_PDEATHSIG, SIGKILL);
}

void GeneratorRun::Process::endGroup() {
    if (state() == NotRunning)
        return;
    ::kill(static_cast<pid_t>(-processId()), SIGKILL);
    kill(); // the group may not be there yet
}

GeneratorRun::GeneratorRun(const QString& program, const QString& missing, QObject* parent)
    : QObject(parent), _program(program), _missing(missing) {
    connect(&_process, &QProcess::readyReadStandardError, this, &GeneratorRun::takeErrors);
    connect(&_process, &QProcess::readyReadStandardOutput, this, &GeneratorRun::takeOutput);
    connect(&_process, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), this, &GeneratorRun::takeEnd);
    connect(&_process, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart) {
            end(tr("%1 cannot be started.").arg(_program));
            takeEnd();
        }
    });
    _deadline.setSingleShot(true);
    _deadline.setInterval(longestRun);
    connect(&_deadline, &QTimer::timeout, this,
            [this] { end(tr("the generator took longer than 5 s and was ended.")); });
    _start.setSingleShot(true);
    connect(&_start, &QTimer::timeout, this, &GeneratorRun::start);
}

GeneratorRun::~GeneratorRun() {
    _process.disconnect(this);
    _process.endGroup();
}

void GeneratorRun::ask(const QStringList& arguments, const QByteArray& input, const Receiver& receiver) {
    cancel();
    _question = Question{arguments, input, receiver};
    if (_process.state() == QProcess::NotRunning)
        _start.start();
}

void GeneratorRun::cancel() {
    _question.reset();
    _isAsked = false;
    _start.stop();
    if (!_isVersionAsked) // which is soon there, and wanted next time
        _process.endGroup();
}

void GeneratorRun::start() {
    if (!QFileInfo(_program).isExecutable()) {
        answer({getProblem(tr("there is no %1.").arg(_program)), {}, {}, false});
        return;
    }
    _isVersionAsked = _checkedState != getState(_program);
    if (_isVersionAsked) {
        startProcess({QStringLiteral("--version")}, {});
    } else {
        _isAsked = true;
        startProcess(_question->arguments, _question->input);
    }
}

void GeneratorRun::startProcess(const QStringList& arguments, const QByteArray& input) {
    _outcome = {};
    _deadline.start();
    _process.start(_program, arguments);
    _process.write(input);
    _process.closeWriteChannel();
}

void GeneratorRun::takeOutput() {
    _outcome.output += _process.readAllStandardOutput();
    if (_outcome.output.size() > largestOutput) {
        end(tr("it is larger than 4 MB."));
        _outcome.output.clear();
    }
}

void GeneratorRun::takeErrors() {
    const QByteArray errors = _process.readAllStandardError();
    _outcome.errors += errors.left(mostErrors - _outcome.errors.size());
}

/// The first reason counts.
void GeneratorRun::end(const QString& reason) {
    if (_outcome.problem.isEmpty())
        _outcome.problem = getProblem(reason);
    _process.endGroup();
}

QString GeneratorRun::getProblem(const QString& reason) const {
    return _missing + ": " + reason;
}

void GeneratorRun::takeEnd() {
    _deadline.stop();
    takeOutput();
    takeErrors();
    if (_outcome.problem.isEmpty() && _process.exitStatus() == QProcess::CrashExit)
        _outcome.problem = getProblem(tr("the generator crashed."));
    _outcome.isDone = _outcome.problem.isEmpty() && _process.exitCode() == 0;
    if (std::exchange(_isVersionAsked, false))
        takeVersion();
    else if (std::exchange(_isAsked, false))
        answer(std::exchange(_outcome, {}));
    if (_question && !_isAsked)
        _start.start();
}

void GeneratorRun::takeVersion() {
    const QString told = QString::fromUtf8(_outcome.output).section(' ', -1).trimmed();
    const QString own = QString::fromStdString(std::string(version.text));
    if (_outcome.problem.isEmpty() && told != own)
        _outcome.problem =
            getProblem(tr("velmora-generate is of version %1, this program of %2.").arg(told.left(20), own));
    if (_outcome.problem.isEmpty())
        _checkedState = getState(_program);
    else
        answer(_outcome);
}

void GeneratorRun::answer(const Outcome& outcome) {
    if (const auto question = std::exchange(_question, std::nullopt))
        question->receiver(outcome);
}

} // namespace Velmora
