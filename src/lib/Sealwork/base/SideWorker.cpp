#include <Sealwork/base/SideWorker.h>

#include <csignal>
#include <system_error>
#include <utility>

namespace Sealwork {

namespace {

constexpr std::size_t blockSize = 131072; // Bytes: few hand-overs, and all blocks stay in the processor's second cache.
constexpr std::size_t mostWaiting = 4;    // Blocks.

} // namespace

SideWorker::SideWorker(Work work) : _work(std::move(work)) {
    // Signals are for the threads that were there before.
    sigset_t all{};
    sigset_t before{};
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    try {
        _thread = std::thread([this] { run(); });
    } catch (const std::system_error&) {
        _thread = {}; // There is a limit on processes, for instance.
    }
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

SideWorker::~SideWorker() {
    {
        const std::lock_guard lock(_mutex);
        _waiting.clear();
    }
    stop();
}

void SideWorker::append(std::span<const std::uint8_t> bytes) {
    if (!_thread.joinable()) {
        _work(bytes);
        return;
    }
    _filling.insert(_filling.end(), bytes.begin(), bytes.end());
    if (_filling.size() >= blockSize)
        handOn();
}

void SideWorker::finish() {
    if (_thread.joinable())
        handOn();
    stop();
    if (_failure)
        std::rethrow_exception(_failure);
}

void SideWorker::handOn() {
    {
        std::unique_lock lock(_mutex);
        _changed.wait(lock, [this] { return _waiting.size() < mostWaiting || _failure; });
        if (_failure)
            std::rethrow_exception(_failure);
        _waiting.push_back(std::exchange(_filling, {}));
        if (!_spare.empty()) {
            _filling = std::move(_spare.back());
            _spare.pop_back();
        }
    }
    _changed.notify_all();
}

void SideWorker::run() noexcept {
    std::unique_lock lock(_mutex);
    for (;;) {
        _changed.wait(lock, [this] { return !_waiting.empty() || _isComplete; });
        if (_waiting.empty())
            return;
        Block block = std::move(_waiting.front());
        _waiting.pop_front();
        lock.unlock();
        _changed.notify_all();
        std::exception_ptr failure;
        try {
            _work(block);
            block.clear();
        } catch (...) {
            failure = std::current_exception();
        }
        lock.lock();
        if (failure) {
            _failure = failure;
            _changed.notify_all();
            return;
        }
        _spare.push_back(std::move(block));
    }
}

void SideWorker::stop() noexcept {
    {
        const std::lock_guard lock(_mutex);
        _isComplete = true;
    }
    _changed.notify_all();
    if (_thread.joinable())
        _thread.join();
}

} // namespace Sealwork
