#include <Brindle/core/Console.h>

#include <Brindle/core/Build.h>
#include <Brindle/core/Label.h>
#include <Brindle/core/Text.h>
#include <Brindle/core/TextLines.h>

#include <algorithm>
#include <iomanip>
#include <iostream>
#include <locale>
#include <sstream>

namespace Brindle {

namespace {

constexpr std::size_t longestShown = 1000; // characters
constexpr std::string_view blanksPerLevel = "  ";

/// A terminal would obey it.
bool isObeyed(char byte) {
    return isControl(byte) && byte != '\t';
}

std::vector<std::string_view> linesOf(std::string_view text) {
    std::vector<std::string_view> lines;
    TextLines rest(text);
    while (const auto line = rest.next())
        lines.push_back(*line);
    lines.push_back(rest.getRest());
    return lines;
}

/// The text with blanks for its line breaks.
std::string onOneLine(std::string text) {
    std::ranges::replace(text, '\n', ' ');
    return text;
}

std::string withArgument(std::string text, const std::string& argument) {
    if (const auto place = text.find('%'); !argument.empty() && place != text.npos)
        text.replace(place, 1, argument);
    return text;
}

} // namespace

Console console;

Console::~Console() {
    for (ConsoleObserver* observer : _observers)
        observer->_console = nullptr;
}

void Console::setFullLogFile(const std::string& filename) {
    _logFile = std::ofstream();
    if (filename.empty())
        return;
    _logFile.open(filename, std::ios::trunc);
    if (!_logFile)
        throw located(Critical("Unable to open log file"), BRINDLE_HERE, {{"filename", filename}});
}

void Console::print(const std::string& text, const std::string& argument) {
    show(ConsoleLineKind::Text, withArgument(text, argument));
}

void Console::remark(const std::string& text) {
    show(ConsoleLineKind::Remark, text);
}

void Console::printFailure(const std::string& text) {
    show(ConsoleLineKind::Failure, text);
}

void Console::separate() {
    tell([](ConsoleObserver& observer) { observer.onConsoleBreak(); });
}

void Console::tellFiles(const std::vector<std::string>& filenames) {
    tell([&filenames](ConsoleObserver& observer) { observer.onConsoleFiles(filenames); });
}

void Console::error(const std::string& text) {
    ++_errorCount;
    show(ConsoleLineKind::Error, text);
}

void Console::error(const Exception& exception) {
    std::string text = shortened(exception.getMessage(), longestShown);
    std::string separator = " (";
    for (const auto& [name, value] : exception.getFields()) {
        text += separator + name + ": " + onOneLine(shortened(value, longestShown));
        separator = ", ";
    }
    if (!exception.getFields().empty())
        text += ")";
    if (const Location& location = exception.getLocation(); isDebug() && location.line > 0) {
        text += " [" + std::string(location.file) + ", " + std::string(location.function) + ", line " +
                std::to_string(location.line) + "]";
    }
    ++_errorCount;
    for (const std::string_view line : linesOf(text))
        showLine(ConsoleLineKind::Error, std::string(line));
}

void Console::continueError(const std::string& text) {
    show(ConsoleLineKind::Error, text);
}

void Console::unindent() {
    if (_level > 0)
        --_level;
}

void Console::openTimer() {
    _timerStart = std::chrono::steady_clock::now();
}

void Console::closeTimer(const std::string& text) {
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - _timerStart;
    std::ostringstream seconds;
    seconds.imbue(std::locale::classic());
    seconds << std::fixed << std::setprecision(3) << elapsed.count() << " s";
    print(text, seconds.str());
}

void Console::attach(ConsoleObserver& observer) {
    if (observer._console)
        observer._console->detach(observer);
    observer._console = this;
    _observers.push_back(&observer);
}

void Console::detach(ConsoleObserver& observer) {
    if (observer._console != this)
        return;
    std::erase(_observers, &observer);
    observer._console = nullptr;
}

void Console::show(ConsoleLineKind kind, std::string_view text) {
    for (const std::string_view line : linesOf(text))
        showLine(kind, shortened(line, longestShown));
}

void Console::showLine(ConsoleLineKind kind, const std::string& text) {
    std::string line;
    if (!text.empty()) {
        for (unsigned level = 0; level < _level; ++level)
            line += blanksPerLevel;
        line += text;
        std::ranges::replace_if(line, isObeyed, '?');
    }
    if (kind == ConsoleLineKind::Error || (kind == ConsoleLineKind::Remark && _isQuiet))
        std::cerr << line << std::endl;
    else if (!_isQuiet)
        std::cout << line << std::endl;
    if (_logFile.is_open())
        _logFile << line << std::endl;
    tell([&](ConsoleObserver& observer) { observer.onConsoleLine(kind, line); });
}

void Console::tell(const std::function<void(ConsoleObserver&)>& what) const {
    const auto observers = _observers; // while it is told, an observer may take itself or another one off
    for (ConsoleObserver* observer : observers) {
        if (std::ranges::find(_observers, observer) != _observers.end())
            what(*observer);
    }
}

ConsoleObserver::~ConsoleObserver() {
    if (_console)
        _console->detach(*this);
}

} // namespace Brindle
