#include <velmora-seal/Progress.h>

#include <Brindle/core/Text.h>
#include <velmora-seal/Report.h>

#include <chrono>
#include <condition_variable>
#include <csignal>
#include <iostream>
#include <mutex>

#include <unistd.h>

namespace SealTool {

namespace {

void showSeconds(const std::stop_token& stop, const std::string& work) {
    std::mutex mutex;
    // cppcheck-suppress localMutex ; nothing is shared, only the wait needs a lock
    std::unique_lock lock(mutex);
    std::condition_variable_any clock;
    for (int seconds = 1;; ++seconds) {
        clock.wait_for(lock, stop, std::chrono::seconds(1), [] { return false; });
        if (stop.stop_requested()) {
            if (seconds > 1)
                std::cerr << "\r\033[K" << std::flush;
            return;
        }
        std::cerr << "\rvelmora-seal: " << work << ", " << seconds << " s" << std::flush;
    }
}

} // namespace

Progress::Progress(const std::string& work) {
    if (isatty(STDERR_FILENO) != 1)
        return;
    // Signals are for the thread that does the work.
    sigset_t all;
    sigset_t earlier;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &earlier);
    _clock = std::jthread(showSeconds, Brindle::getPrintable(work));
    pthread_sigmask(SIG_SETMASK, &earlier, nullptr);
}

} // namespace SealTool
