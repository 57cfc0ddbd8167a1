#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace SealTool {

/// An option that a command takes.
struct Option {
    const char* name = ""; ///< Long name without the dashes.
    bool hasValue = true;  ///< False for a switch.
    char shortName = '\0'; ///< One letter, or none.
};

/// The options and operands that a command was called with. Options may stand before and after operands; "--" ends
/// them.
class CommandLine {
public:
    /// `arguments` begins with the command's name; "--help" and "-h" are always known. Throws UsageError.
    CommandLine(const std::vector<std::string>& arguments, const std::vector<Option>& options);

    bool has(std::string_view option) const { return _values.contains(option); }
    std::optional<std::string> find(std::string_view option) const;
    /// Throws UsageError when the option was not given.
    std::string get(std::string_view option) const;
    const std::vector<std::string>& getOperands() const { return _operands; }
    /// The one operand. Throws UsageError, which names it, when there is none or more than one.
    std::string getOperand(std::string_view name) const;

private:
    std::map<std::string, std::string, std::less<>> _values;
    std::vector<std::string> _operands;
};

} // namespace SealTool
