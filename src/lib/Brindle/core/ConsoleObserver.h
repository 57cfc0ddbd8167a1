#pragma once

#include <string>
#include <vector>

namespace Brindle {

class Console;

/// What a console line is, which decides how it is shown. A failure is what errors have led to.
enum class ConsoleLineKind { Text, Remark, Error, Failure };

/// Someone who sees every line of a console, such as the console pane. An observer takes itself off the console that it
/// was attached to in its destructor.
class ConsoleObserver {
public:
    ConsoleObserver() = default;
    ConsoleObserver(const ConsoleObserver&) = delete;
    ConsoleObserver& operator=(const ConsoleObserver&) = delete;
    virtual ~ConsoleObserver();

    /// One line as it is shown: indented, in UTF-8, without its line end.
    virtual void onConsoleLine(ConsoleLineKind kind, const std::string& line) = 0;
    /// What comes next is apart from what was shown.
    virtual void onConsoleBreak() {}
    /// What the last line tells of has written these files, whose paths are absolute.
    virtual void onConsoleFiles(const std::vector<std::string>&) {}

private:
    friend class Console;
    Console* _console = nullptr;
};

} // namespace Brindle
