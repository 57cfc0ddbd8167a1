#pragma once

#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace Velmora {

/// One configured instance of an IP as a small text: which IP it is for and what its form holds, one `key = value` a
/// line. Lines that are empty or begin with "#" say nothing. Keys are those of the settings; the rows of a table have
/// the table's name, "/" and their number. How a value is written, `ConfigurationValue` tells.
class Configuration {
public:
    struct Entry {
        std::string key;
        std::string value; ///< As it is written.
        int line = 0;      ///< In its file, from 1; 0 for one that comes from no file.
    };
    /// By the components of the keys, between which "/" stands: numbers first and by value, the others as texts.
    struct KeyOrder {
        using is_transparent = void;
        bool operator()(std::string_view left, std::string_view right) const;
        bool operator()(const Entry& left, const Entry& right) const { return (*this)(left.key, right.key); }
        bool operator()(const Entry& left, std::string_view right) const { return (*this)(left.key, right); }
        bool operator()(std::string_view left, const Entry& right) const { return (*this)(left, right.key); }
    };
    using Entries = std::set<Entry, KeyOrder>;

    /// A configuration of that IP, without a field yet.
    Configuration(const std::string& company, const std::string& name, const std::string& uid);

    /// Reads a text, which comes from the file of that name. Throws Brindle::Critical with the fields "filename" and
    /// "line" for a line that is not of the form `key = value` or holds a control character, for a key that is given
    /// twice, and when it does not say which IP it is for. What the keys and values mean is not looked at.
    static Configuration parse(std::string_view text, const std::string& filename);

    const std::string& getCompany() const { return _company; }
    const std::string& getName() const { return _name; }
    const std::string& getUID() const { return _uid; }

    /// The values of the form.
    const Entries& getEntries() const { return _entries; }
    /// The entry of that key; null when there is none.
    const Entry* find(std::string_view key) const;

    /// Add the value of a field and the texts of a row of a table.
    void addText(const std::string& key, const std::string& text);
    void addList(const std::string& key, const std::vector<std::string>& texts);

    /// What an entry stands for. Throw Brindle::Critical when its quotes or escapes are wrong.
    std::string getText(const Entry& entry) const;
    std::vector<std::string> getList(const Entry& entry) const;

    /// The configuration as a file holds it: company, name and uid, an empty line, the sorted entries.
    std::string getContent() const;

    /// Throws Brindle::Critical with the message and the fields "filename" and "line", the latter of the entry, of the
    /// end of the file, and of the line that names the IP.
    [[noreturn]] void refuse(const std::string& message, const Entry& entry) const;
    [[noreturn]] void refuseEnd(const std::string& message) const;
    [[noreturn]] void refuseIP(const std::string& message) const;

private:
    Configuration() = default;
    [[noreturn]] void refuseLine(const std::string& message, int line) const;
    void takeLine(std::string_view line);
    void takeHead();
    std::string takeHeadEntry(std::string_view key);

    std::string _company;
    std::string _name;
    std::string _uid;
    Entries _entries;
    std::string _filename;
    int _nameLine = 0;
    int _lineCount = 0;
};

} // namespace Velmora
