#include <velmora-generate/JobRun.h>

#include <Brindle/core/Console.h>

#include <QJsonDocument>
#include <QJsonObject>

namespace GenerateTool {

void JobRun::run(const QStringList& filenames, const Receiver& receive) {
    for (int next = 0; next < filenames.size() || !_jobs.empty();) {
        for (auto room = _jobCount - static_cast<int>(getRunning().size()); room > 0 && next < filenames.size(); --room)
            start(filenames[next++]);
        OwnProcess::wait(getRunning());
        takeResults();
        answerClaims();
        for (; !_jobs.empty() && _jobs.front().hasEnded; _jobs.pop_front())
            receive(_jobs.front().filename, _jobs.front().process);
    }
}

void JobRun::start(const QString& filename) {
    const auto work = [this, &filename](const OwnProcess::Ask& ask) {
        _output.setClaim([&ask](const QString& path) { return ask(path.toUtf8()); });
        return _handle(filename);
    };
    Brindle::console.indent(); // below the name of the file
    _jobs.emplace_back(filename, work);
    Brindle::console.unindent();
}

std::vector<OwnProcess*> JobRun::getRunning() {
    std::vector<OwnProcess*> running;
    for (Job& job : _jobs) {
        if (!job.hasEnded)
            running.push_back(&job.process);
    }
    return running;
}

void JobRun::takeResults() {
    for (Job& job : _jobs) {
        if (job.hasEnded || !job.process.isAtEnd())
            continue;
        job.hasEnded = true;
        const QJsonObject report = QJsonDocument::fromJson(job.process.getResult()).object();
        if (report.contains("output"))
            _output.setTaken(report["output"].toString());
    }
}

/// As if the files were handled one by one: whose turn it is waits for those before it that want the same.
void JobRun::answerClaims() {
    for (Job& job : _jobs) {
        if (job.hasEnded || job.claim)
            continue;
        const auto question = job.process.getQuestion();
        if (!question || isClaimedBefore(job, *question))
            return;
        job.claim = question;
        job.process.answer(_output.isTaken(QString::fromUtf8(*question)));
    }
}

bool JobRun::isClaimedBefore(const Job& job, const QByteArray& path) const {
    for (const Job& earlier : _jobs) {
        if (&earlier == &job)
            return false;
        if (!earlier.hasEnded && earlier.claim == path)
            return true;
    }
    return false;
}

} // namespace GenerateTool
