#include <velmora-generate/OwnProcess.h>

#include <Brindle/core/Exception.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace GenerateTool {

namespace {

using Brindle::FileDescriptor;

[[noreturn]] void refuse(const std::string& reason) {
    throw Brindle::located(Brindle::Fatal("The process that handles the file failed"), BRINDLE_HERE,
                           {{"reason", reason}});
}

Pipe makePipe() {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0)
        refuse(std::strerror(errno));
    return {FileDescriptor(ends[0]), FileDescriptor(ends[1])};
}

bool write(const FileDescriptor& file, const QByteArray& bytes) {
    return file.write({reinterpret_cast<const std::uint8_t*>(bytes.data()), static_cast<std::size_t>(bytes.size())});
}

void flush() {
    std::cout.flush();
    std::fflush(nullptr);
}

[[noreturn]] void work(pid_t parent, const OwnProcess::Work& doWork, const FileDescriptor& result,
                       const FileDescriptor& answers) {
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    const auto ask = [&](const QByteArray& question) {
        std::array<std::uint8_t, 1> answer{};
        return write(result, question + '\0') && answers.read(answer) == 1 && answer[0] == 1;
    };
    const bool isDone = getppid() == parent && write(result, doWork(ask));
    flush();
    _exit(isDone ? 0 : 1); // what the program does at its end is the other process's
}

int waitFor(pid_t process) {
    int status = 0;
    while (waitpid(process, &status, 0) < 0 && errno == EINTR) {
    }
    return status;
}

/// What can be read now; the file is closed at its end.
QByteArray readAvailable(FileDescriptor& file) {
    QByteArray all;
    std::array<char, 65536> piece{};
    for (;;) {
        const ssize_t size = ::read(file.get(), piece.data(), piece.size());
        if (size > 0)
            all.append(piece.data(), static_cast<int>(size));
        else if (size == 0 || (errno != EINTR && errno != EAGAIN))
            file.close();
        if (size <= 0 && (size == 0 || errno != EINTR))
            return all;
    }
}

} // namespace

OwnProcess::OwnProcess(const Work& doWork, Output output) : _result(-1), _answers(makePipe()) {
    Pipe result = makePipe();
    std::vector<std::pair<Pipe, int>> outputs;
    if (output == Output::Kept) {
        outputs.emplace_back(makePipe(), STDOUT_FILENO);
        outputs.emplace_back(makePipe(), STDERR_FILENO);
    }
    flush();
    const pid_t parent = getpid();
    const pid_t process = fork();
    if (process < 0)
        refuse(std::strerror(errno));
    if (process == 0) {
        for (const auto& [pipe, descriptor] : outputs)
            dup2(pipe.writeEnd.get(), descriptor);
        _answers.writeEnd.close();
        work(parent, doWork, result.writeEnd, _answers.readEnd);
    }
    _ending = {process, parent};
    _endWithThisOne.emplace(end, &_ending);
    _result = std::move(result.readEnd);
    for (auto& [pipe, descriptor] : outputs)
        _streams.push_back({std::move(pipe.readEnd), descriptor == STDERR_FILENO});
    fcntl(_result.get(), F_SETFL, O_NONBLOCK);
    for (const Stream& stream : _streams)
        fcntl(stream.file.get(), F_SETFL, O_NONBLOCK);
}

OwnProcess::~OwnProcess() {
    if (_ending.process > 0)
        end(&_ending);
}

void OwnProcess::wait(const std::vector<OwnProcess*>& processes) {
    std::vector<pollfd> descriptors;
    for (const OwnProcess* process : processes) {
        descriptors.push_back({process->_result.get(), POLLIN, 0});
        for (const Stream& stream : process->_streams)
            descriptors.push_back({stream.file.get(), POLLIN, 0});
    }
    while (poll(descriptors.data(), descriptors.size(), -1) < 0 && errno == EINTR) {
    }
    for (OwnProcess* process : processes)
        process->read();
}

std::optional<QByteArray> OwnProcess::getQuestion() const {
    const int end = _received.indexOf('\0');
    return end < 0 ? std::nullopt : std::optional(_received.left(end));
}

void OwnProcess::answer(bool answer) {
    _received.remove(0, _received.indexOf('\0') + 1);
    write(_answers.writeEnd, QByteArray(1, answer ? '\1' : '\0'));
}

void OwnProcess::finish() {
    _status = waitFor(std::exchange(_ending.process, 0));
    for (const Piece& piece : _pieces) {
        std::ostream& stream = piece.isError ? std::cerr : std::cout;
        stream.write(piece.text.data(), piece.text.size()).flush();
    }
}

void OwnProcess::requireDone() const {
    if (WIFSIGNALED(_status))
        refuse(std::string("It was ended by a signal: ") + strsignal(WTERMSIG(_status)));
    if (WEXITSTATUS(_status) != 0)
        refuse("It ended with exit status " + std::to_string(WEXITSTATUS(_status)));
}

/// At the end of the result all of the streams is there.
void OwnProcess::read() {
    if (_result.isOpen())
        _received += readAvailable(_result);
    for (Stream& stream : _streams) {
        if (QByteArray text = stream.file.isOpen() ? readAvailable(stream.file) : QByteArray(); !text.isEmpty())
            _pieces.push_back({std::move(text), stream.isError});
    }
}

/// Of a signal handler, too.
void OwnProcess::end(void* data) {
    const auto* ending = static_cast<const Ending*>(data);
    if (ending->process <= 0 || getpid() != ending->parent)
        return;
    kill(ending->process, SIGTERM);
    waitpid(ending->process, nullptr, 0);
}

QByteArray runInOwnProcess(const std::function<QByteArray()>& doWork) {
    OwnProcess process([&doWork](const OwnProcess::Ask&) { return doWork(); }, OwnProcess::Output::Shared);
    while (!process.isAtEnd())
        OwnProcess::wait({&process});
    process.finish();
    process.requireDone();
    return process.getResult();
}

} // namespace GenerateTool
