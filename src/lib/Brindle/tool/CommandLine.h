#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Brindle {

/// An option that a command takes.
struct Option {
    const char* name = ""; ///< Long name without the dashes.
    bool hasValue = true;  ///< False for a switch.
    char shortName = '\0'; ///< One letter, or none.
};

/// The options and operands that a command was called with. Options may stand before and after operands, and a long one
/// may be cut as long as no other begins so; "--" ends them.
class CommandLine {
public:
    /// `arguments` begins with the command's name. Throws UsageError.
    CommandLine(const std::vector<std::string>& arguments, const std::vector<Option>& options);

    bool has(std::string_view option) const { return _values.contains(option); }
    std::optional<std::string> find(std::string_view option) const;
    /// Throws UsageError when the option was not given.
    std::string get(std::string_view option) const;
    const std::vector<std::string>& getOperands() const { return _operands; }
    /// The one operand. Throws UsageError, which names it, when there is none or more than one.
    std::string getOperand(std::string_view name) const;
    /// Throws UsageError, which names them, when there is no operand.
    void requireOperands(std::string_view name) const;
    /// Throws UsageError when there is one.
    void requireNoOperand() const;

private:
    std::map<std::string, std::string, std::less<>> _values;
    std::vector<std::string> _operands;
};

} // namespace Brindle
