#pragma once

#include <velmora-generate/Output.h>
#include <velmora-generate/OwnProcess.h>

#include <QStringList>

#include <functional>
#include <list>
#include <optional>

namespace GenerateTool {

/// Handles several files at a time, each in a process of its own, with the results of one after the other: which of two
/// files may have an output that both want is decided by their order.
class JobRun {
public:
    /// Handles one file, in its process; the report of it as a JSON text.
    using Handler = std::function<QByteArray(const QString& filename)>;
    /// Is handed the process of one file, which has ended and has its report, in the order of the files.
    using Receiver = std::function<void(const QString& filename, OwnProcess& process)>;

    JobRun(int jobCount, Output& output, Handler handle)
        : _jobCount(jobCount), _output(output), _handle(std::move(handle)) {}

    void run(const QStringList& filenames, const Receiver& receive);

private:
    struct Job {
        Job(const QString& ofFile, const OwnProcess::Work& work)
            : filename(ofFile), process(work, OwnProcess::Output::Kept) {}

        QString filename;
        OwnProcess process;
        std::optional<QByteArray> claim; ///< The output that it has or was refused.
        bool hasEnded = false;
    };

    void start(const QString& filename);
    std::vector<OwnProcess*> getRunning();
    void takeResults();
    void answerClaims();
    bool isClaimedBefore(const Job& job, const QByteArray& path) const;

    const int _jobCount;
    Output& _output;
    const Handler _handle;
    std::list<Job> _jobs; ///< In the order of the files.
};

} // namespace GenerateTool
