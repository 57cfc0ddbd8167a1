#include <velmora/rules/Configuration.h>

#include <velmora/rules/ConfigurationValue.h>

#include <Brindle/core/Exception.h>
#include <Brindle/core/Text.h>
#include <Brindle/core/TextLines.h>

#include <algorithm>
#include <compare>

namespace Velmora {

namespace {

constexpr std::string_view companyKey = "company";
constexpr std::string_view nameKey = "name";
constexpr std::string_view uidKey = "uid";

std::string formatted(std::string_view key, std::string_view value) {
    std::string line = std::string(key) + " =";
    if (!value.empty())
        line.append(" ").append(value);
    return line + "\n";
}

bool isNumber(std::string_view text) {
    return !text.empty() && std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
}

std::string_view takeComponent(std::string_view& key) {
    const auto end = key.find('/');
    const std::string_view component = key.substr(0, end);
    key.remove_prefix(end == key.npos ? key.size() : end + 1);
    return component;
}

std::strong_ordering compareComponents(std::string_view left, std::string_view right) {
    if (isNumber(left) != isNumber(right))
        return isNumber(left) ? std::strong_ordering::less : std::strong_ordering::greater;
    if (isNumber(left) && left.size() != right.size())
        return left.size() <=> right.size();
    return left <=> right;
}

} // namespace

bool Configuration::KeyOrder::operator()(std::string_view left, std::string_view right) const {
    std::string_view leftRest = left;
    std::string_view rightRest = right;
    while (!leftRest.empty() && !rightRest.empty()) {
        const auto order = compareComponents(takeComponent(leftRest), takeComponent(rightRest));
        if (order != 0)
            return order < 0;
    }
    return leftRest.size() != rightRest.size() ? leftRest.empty() : left < right;
}

Configuration::Configuration(const std::string& company, const std::string& name, const std::string& uid)
    : _company(company), _name(name), _uid(uid) {}

Configuration Configuration::parse(std::string_view text, const std::string& filename) {
    Configuration configuration;
    configuration._filename = filename;
    if (text.starts_with(Brindle::byteOrderMark))
        text.remove_prefix(Brindle::byteOrderMark.size());
    Brindle::TextLines lines(text);
    while (const auto line = lines.nextOrLast())
        configuration.takeLine(*line);
    configuration.takeHead();
    return configuration;
}

void Configuration::takeLine(std::string_view line) {
    ++_lineCount;
    if (line.ends_with('\r'))
        line.remove_suffix(1);
    line = Brindle::trimmed(line);
    if (line.empty() || line.starts_with('#'))
        return;
    const auto equals = line.find('=');
    const std::string_view key = Brindle::trimmed(line.substr(0, equals));
    if (equals == line.npos || key.empty())
        refuseLine("Invalid line, expected 'key = value'", _lineCount);
    if (std::ranges::any_of(line, [](char c) { return Brindle::isControl(c) && c != '\t'; }))
        refuseLine("Control character, write it between double quotes as \\n, \\r, \\t or \\x and two digits",
                   _lineCount);
    if (const Entry* earlier = find(key)) {
        refuseLine(Brindle::inQuotes(earlier->key) + " is given in line " + std::to_string(earlier->line) +
                       " already, remove one of them",
                   _lineCount);
    }
    _entries.insert({std::string(key), std::string(Brindle::trimmed(line.substr(equals + 1))), _lineCount});
}

/// Moves what names the IP out of the entries.
void Configuration::takeHead() {
    _company = takeHeadEntry(companyKey);
    _uid = takeHeadEntry(uidKey);
    if (const Entry* entry = find(nameKey))
        _nameLine = entry->line;
    _name = takeHeadEntry(nameKey);
}

std::string Configuration::takeHeadEntry(std::string_view key) {
    const Entry* entry = find(key);
    if (!entry) {
        refuseLine("'" + std::string(key) + "' is missing, a configuration begins with company, name and uid of its IP",
                   1);
    }
    const std::string text = getText(*entry);
    _entries.erase(_entries.find(key));
    return text;
}

const Configuration::Entry* Configuration::find(std::string_view key) const {
    const auto place = _entries.find(key);
    return place != _entries.end() ? &*place : nullptr;
}

void Configuration::addText(const std::string& key, const std::string& text) {
    _entries.insert({key, ConfigurationValue::fromText(text)});
}

void Configuration::addList(const std::string& key, const std::vector<std::string>& texts) {
    _entries.insert({key, ConfigurationValue::fromList(texts)});
}

std::string Configuration::getText(const Entry& entry) const {
    if (auto text = ConfigurationValue::toText(entry.value))
        return *text;
    refuse("Wrong double quotes or backslash in " + Brindle::inQuotes(entry.key), entry);
}

std::vector<std::string> Configuration::getList(const Entry& entry) const {
    if (auto texts = ConfigurationValue::toList(entry.value))
        return *texts;
    refuse("Wrong double quotes or backslash in " + Brindle::inQuotes(entry.key), entry);
}

std::string Configuration::getContent() const {
    std::string content = formatted(companyKey, ConfigurationValue::fromText(_company)) +
                          formatted(nameKey, ConfigurationValue::fromText(_name)) +
                          formatted(uidKey, ConfigurationValue::fromText(_uid)) + "\n";
    for (const Entry& entry : _entries)
        content += formatted(entry.key, entry.value);
    return content;
}

void Configuration::refuse(const std::string& message, const Entry& entry) const {
    refuseLine(message, entry.line);
}

void Configuration::refuseEnd(const std::string& message) const {
    refuseLine(message, _lineCount);
}

void Configuration::refuseIP(const std::string& message) const {
    refuseLine(message, _nameLine);
}

void Configuration::refuseLine(const std::string& message, int line) const {
    throw Brindle::located(Brindle::Critical(message), BRINDLE_HERE,
                           {{"filename", _filename}, {"line", std::to_string(line)}});
}

} // namespace Velmora
