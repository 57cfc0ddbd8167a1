#pragma once

#include <Brindle/core/ConsoleObserver.h>
#include <Brindle/core/Exception.h>

#include <chrono>
#include <fstream>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace Brindle {

/// Where progress and errors are told to the user. Each line goes to standard output (errors to standard error), to the
/// full log file when there is one, and to the observers. A text of several lines is shown as several lines,
/// control characters other than tabs as "?"; a line and every part of an exception are shown up to 1,000 characters.
class Console {
public:
    Console() = default;
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;
    ~Console();

    /// Names the file that every line is also written to, from now on and from its beginning; an empty name means none.
    /// Throws Critical when the file cannot be written.
    void setFullLogFile(const std::string& filename);

    /// A quiet console shows errors and remarks alone, both on standard error; log file and observers get every line.
    void setQuiet(bool isQuiet) { _isQuiet = isQuiet; }

    /// Shows a text; an argument that is not empty stands where the text holds its first "%".
    void print(const std::string& text, const std::string& argument = {});
    /// Shows something that the user should know but need not act upon.
    void remark(const std::string& text);
    /// Shows a text that tells what came of errors, in the colour of an error where there are colours.
    void printFailure(const std::string& text);
    /// Shows an error and counts it.
    void error(const std::string& text);
    /// Shows an exception's message and named fields, whose line breaks become blanks, in a debugging build its
    /// location too, and counts one error.
    void error(const Exception& exception);
    /// Shows a line that belongs to the error before and is not counted.
    void continueError(const std::string& text);

    /// Tells the observers that something else begins; no line is shown.
    void separate();

    /// Tells the observers which files came of what the last line tells; no line is shown. Their paths are absolute.
    void tellFiles(const std::vector<std::string>& filenames);

    void indent() { ++_level; }
    /// Takes one level back; at the first level nothing happens.
    void unindent();

    /// Starts measuring.
    void openTimer();
    /// Prints the text with the time since `openTimer` in seconds where it holds "%".
    void closeTimer(const std::string& text);

    /// Number of errors shown so far.
    unsigned long getErrorCount() const { return _errorCount; }

    /// The observer is kept, not owned.
    void attach(ConsoleObserver& observer);
    void detach(ConsoleObserver& observer);

private:
    void show(ConsoleLineKind kind, std::string_view text);
    void showLine(ConsoleLineKind kind, const std::string& text);
    void tell(const std::function<void(ConsoleObserver&)>& what) const;

    bool _isQuiet = false;
    unsigned _level = 0;
    unsigned long _errorCount = 0;
    std::chrono::steady_clock::time_point _timerStart = std::chrono::steady_clock::now();
    std::ofstream _logFile;
    std::vector<ConsoleObserver*> _observers;
};

/// The console of the process.
extern Console console;

} // namespace Brindle
