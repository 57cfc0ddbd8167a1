#include <velmora-generate/OwnProcess.h>

#include <Brindle/core/Exception.h>
#include <Brindle/files/FileDescriptor.h>
#include <Brindle/files/SignalCleanup.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <iostream>

#include <fcntl.h>
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

[[noreturn]] void refuse(int error) {
    refuse(std::strerror(error));
}

[[noreturn]] void work(pid_t parent, const std::function<QByteArray()>& doWork, const FileDescriptor& result) {
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    bool isDone = getppid() == parent;
    if (isDone) {
        const QByteArray bytes = doWork();
        isDone =
            result.write({reinterpret_cast<const std::uint8_t*>(bytes.data()), static_cast<std::size_t>(bytes.size())});
    }
    std::cout.flush();
    std::fflush(nullptr);
    _exit(isDone ? 0 : 1); // what the program does at its end is the other process's
}

int waitFor(pid_t process) {
    int status = 0;
    while (waitpid(process, &status, 0) < 0 && errno == EINTR) {
    }
    return status;
}

QByteArray readAll(const FileDescriptor& file) {
    QByteArray all;
    std::array<std::uint8_t, 65536> piece{};
    for (auto size = file.read(piece); size > 0; size = file.read(piece))
        all.append(reinterpret_cast<const char*>(piece.data()), static_cast<int>(size));
    return all;
}

} // namespace

QByteArray runInOwnProcess(const std::function<QByteArray()>& doWork) {
    std::array<int, 2> pipe{};
    if (pipe2(pipe.data(), O_CLOEXEC) != 0)
        refuse(errno);
    const FileDescriptor readEnd(pipe[0]);
    FileDescriptor writeEnd(pipe[1]);
    std::cout.flush();
    std::fflush(nullptr);
    const pid_t parent = getpid();
    pid_t process = fork();
    if (process < 0)
        refuse(errno);
    if (process == 0)
        work(parent, doWork, writeEnd);
    writeEnd.close();
    const Brindle::SignalCleanup endWithThisOne(
        [](void* data) {
            const pid_t other = *static_cast<const pid_t*>(data);
            kill(other, SIGTERM);
            waitpid(other, nullptr, 0);
        },
        &process);
    QByteArray result = readAll(readEnd);
    const int status = waitFor(process);
    if (WIFSIGNALED(status))
        refuse(std::string("It was ended by a signal: ") + strsignal(WTERMSIG(status)));
    if (WEXITSTATUS(status) != 0)
        refuse("It ended with exit status " + std::to_string(WEXITSTATUS(status)));
    return result;
}

} // namespace GenerateTool
