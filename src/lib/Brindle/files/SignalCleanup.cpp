#include <Brindle/files/SignalCleanup.h>

#include <array>
#include <atomic>
#include <csignal>
#include <utility>

namespace Brindle {

namespace {

struct Handled {
    int number = 0;
    struct sigaction earlier {};
};

std::array handled{Handled{SIGHUP},  Handled{SIGINT},  Handled{SIGQUIT}, Handled{SIGPIPE},
                   Handled{SIGTERM}, Handled{SIGXCPU}, Handled{SIGXFSZ}};
unsigned useCount = 0;
std::atomic<unsigned> delayCount = 0;
std::atomic<int> waiting = 0; // A signal, 0 for none.

} // namespace

/// Those that live, the newest first. A signal may come between any two steps of a change.
struct SignalCleanups {
    static void add(SignalCleanup& cleanup) { newest = &cleanup; }

    static void remove(SignalCleanup& cleanup) {
        auto* link = &newest;
        while (*link != &cleanup)
            link = &link->load()->_earlier;
        *link = cleanup._earlier.load();
    }

    static void clean() {
        for (const auto* cleanup = newest.load(); cleanup; cleanup = cleanup->_earlier)
            cleanup->_clean(cleanup->_data);
    }

    static inline std::atomic<SignalCleanup*> newest = nullptr;
};

namespace {

/// Cleans and lets the signal end the program.
void end(int number) {
    SignalCleanups::clean();
    std::signal(number, SIG_DFL);
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, number);
    pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
    std::raise(number);
}

void handle(int number) {
    if (delayCount > 0)
        waiting = number;
    else
        end(number);
}

void use() {
    if (useCount++ > 0)
        return;
    struct sigaction action {};
    action.sa_handler = handle;
    action.sa_flags = SA_RESTART;
    sigfillset(&action.sa_mask);
    for (auto& [number, earlier] : handled) {
        sigaction(number, nullptr, &earlier);
        if (earlier.sa_handler == SIG_DFL)
            sigaction(number, &action, nullptr);
    }
}

void release() {
    if (--useCount > 0)
        return;
    for (const auto& [number, earlier] : handled)
        sigaction(number, &earlier, nullptr);
}

} // namespace

SignalCleanup::SignalCleanup(void (*clean)(void* data), void* data)
    : _clean(clean), _data(data), _earlier(SignalCleanups::newest.load()) {
    use();
    SignalCleanups::add(*this);
}

SignalCleanup::~SignalCleanup() {
    SignalCleanups::remove(*this);
    release();
}

SignalDelay::SignalDelay() {
    use();
    ++delayCount;
}

SignalDelay::~SignalDelay() {
    if (--delayCount == 0)
        if (const int number = waiting.exchange(0))
            end(number);
    release();
}

} // namespace Brindle
