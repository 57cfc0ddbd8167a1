#pragma once

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <exception>
#include <functional>
#include <mutex>
#include <span>
#include <thread>
#include <vector>

namespace Sealwork {

/// Does on a thread of its own what is to be done with bytes, in order, while the caller makes the next ones. Where no
/// thread can be had the caller does it.
class SideWorker {
public:
    using Work = std::function<void(std::span<const std::uint8_t>)>;

    explicit SideWorker(Work work);
    SideWorker(const SideWorker&) = delete;
    SideWorker& operator=(const SideWorker&) = delete;
    /// Gives up what is not done yet.
    ~SideWorker();

    /// Takes a copy; waits while too much of it is not done yet. Throws what the work threw.
    void append(std::span<const std::uint8_t> bytes);
    /// Returns when all is done. Throws what the work threw. Nothing may be appended afterwards.
    void finish();

private:
    using Block = std::vector<std::uint8_t>;

    void handOn();
    void run() noexcept;
    void stop() noexcept;

    const Work _work;
    Block _filling; ///< The caller's.
    std::mutex _mutex;
    std::condition_variable _changed;
    std::deque<Block> _waiting;
    std::vector<Block> _spare; ///< Done, to be filled again.
    std::exception_ptr _failure;
    bool _isComplete = false; ///< Nothing follows.
    std::thread _thread;      ///< Last, so that all it uses is there.
};

} // namespace Sealwork
