#pragma once

#include <atomic>

namespace Brindle {

/// What has to be done although a signal ends the program, as long as the object lives: the removal of a file that is
/// not finished, the return of a terminal to its state. SIGHUP, SIGINT, SIGQUIT, SIGPIPE, SIGTERM, SIGXCPU and SIGXFSZ,
/// as far as the program leaves them to the system, then end it after that. For one thread; others should block
/// signals.
class SignalCleanup {
public:
    /// `clean` may do no more than a signal handler may, and is called with `data`, which is kept, not owned.
    SignalCleanup(void (*clean)(void* data), void* data);
    SignalCleanup(const SignalCleanup&) = delete;
    SignalCleanup& operator=(const SignalCleanup&) = delete;
    ~SignalCleanup();

private:
    friend struct SignalCleanups;

    void (*const _clean)(void*);
    void* const _data;
    std::atomic<SignalCleanup*> _earlier;
};

/// While one lives, those signals wait: what is done must be done whole. The end of the last one lets them through.
class SignalDelay {
public:
    SignalDelay();
    SignalDelay(const SignalDelay&) = delete;
    SignalDelay& operator=(const SignalDelay&) = delete;
    ~SignalDelay();
};

} // namespace Brindle
