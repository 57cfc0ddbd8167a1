#pragma once

#include <string>
#include <thread>

namespace SealTool {

/// Shows on standard error, when that is a terminal, that a long work goes on: from its first second to the end of this
/// object's life a line with the seconds gone by, which is then taken away.
class Progress {
public:
    /// What is being done: "opening top.vhd".
    explicit Progress(const std::string& work);

private:
    std::jthread _clock;
};

} // namespace SealTool
