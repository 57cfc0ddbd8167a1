#pragma once

#include <Brindle/files/FileDescriptor.h>
#include <Brindle/files/SignalCleanup.h>

#include <QByteArray>

#include <array>
#include <functional>
#include <optional>
#include <vector>

#include <sys/types.h>

namespace GenerateTool {

struct Pipe {
    Brindle::FileDescriptor readEnd{-1};
    Brindle::FileDescriptor writeEnd{-1};
};

/// A process that does a piece of work and hands over what it makes: of what it leaves behind only files are seen here.
/// It ends with this one.
class OwnProcess {
public:
    /// Asks the process that waits for the result, with no NUL in the question; gives its answer.
    using Ask = std::function<bool(const QByteArray& question)>;
    using Work = std::function<QByteArray(const Ask& ask)>;
    /// Whether it writes to the standard output and error of this process, or what it writes there is kept.
    enum class Output { Shared, Kept };

    /// Starts it. Throws Brindle::Fatal with the field "reason" when that fails.
    OwnProcess(const Work& work, Output output);
    OwnProcess(const OwnProcess&) = delete;
    OwnProcess& operator=(const OwnProcess&) = delete;
    ~OwnProcess();

    /// Waits until one of them wrote something or ended, and takes what they wrote.
    static void wait(const std::vector<OwnProcess*>& processes);

    bool isAtEnd() const { return !_result.isOpen(); }
    /// What it asked and waits for, until the answer.
    std::optional<QByteArray> getQuestion() const;
    void answer(bool answer);

    /// Waits for its end, and writes what was kept to standard output and error.
    void finish();
    /// The result; of no use before the end.
    const QByteArray& getResult() const { return _received; }
    /// Throws Brindle::Fatal with the field "reason" when it was finished before its work was done.
    void requireDone() const;

private:
    struct Stream {
        Brindle::FileDescriptor file;
        bool isError;
    };
    struct Piece {
        QByteArray text;
        bool isError;
    };
    struct Ending {
        pid_t process;
        pid_t parent; ///< A later child has a copy of this, and must not end its sibling.
    };

    void read();
    static void end(void* data);

    Brindle::FileDescriptor _result;
    Pipe _answers; ///< Both ends, so that an answer to one that has died is no broken pipe.
    std::vector<Stream> _streams;
    Ending _ending{};
    int _status = 0; ///< As `waitpid` tells it.
    std::optional<Brindle::SignalCleanup> _endWithThisOne;
    QByteArray _received; ///< Of questions with a NUL behind each, then the result; those answered are taken out.
    std::vector<Piece> _pieces;
};

/// Does the work in a process of its own and returns what it returns. Throws as `OwnProcess` does.
QByteArray runInOwnProcess(const std::function<QByteArray()>& work);

} // namespace GenerateTool
