#include <Brindle/tool/CommandLine.h>

#include <Brindle/core/Text.h>
#include <Brindle/tool/UsageError.h>

#include <algorithm>
#include <span>

#include <getopt.h>

namespace Brindle {

namespace {

/// The options in the two forms that `getopt_long` takes. An option's number is its place in the list.
struct OptionTable {
    explicit OptionTable(const std::vector<Option>& options) {
        for (const auto& option : options) {
            const int argument = option.hasValue ? required_argument : no_argument;
            longOptions.push_back({option.name, argument, nullptr, firstNumber + static_cast<int>(longOptions.size())});
            if (option.shortName == '\0')
                continue;
            shortOptions += option.shortName;
            if (option.hasValue)
                shortOptions += ':';
        }
        longOptions.push_back({});
    }

    static constexpr int firstNumber = 256; ///< Beyond all letters.
    std::vector<option> longOptions;
    std::string shortOptions = ":"; ///< The colon tells a missing value from an unknown option.
};

const Option& getOption(const std::vector<Option>& options, int number) {
    if (number >= OptionTable::firstNumber)
        return options[static_cast<std::size_t>(number - OptionTable::firstNumber)];
    return *std::ranges::find(options, static_cast<char>(number), &Option::shortName);
}

/// What is wrong with the option that `getopt_long` just complained about, where `argument` holds it. A short one may
/// be any of several behind one dash.
std::string getProblem(int complaint, const std::string& argument, const std::vector<Option>& options) {
    const bool isShort = optopt > 0 && optopt < OptionTable::firstNumber;
    const std::string given =
        isShort ? std::string{'-', static_cast<char>(optopt)} : argument.substr(0, argument.find('='));
    if (complaint == ':')
        return "Option " + given + " needs a value";
    if (optopt >= OptionTable::firstNumber)
        return "Option " + given + " takes no value";
    const auto isMeant = [&given](const Option& option) {
        return ("--" + std::string(option.name)).starts_with(given);
    };
    return (!isShort && std::ranges::any_of(options, isMeant) ? "Ambiguous option " : "Unknown option ") + given;
}

} // namespace

CommandLine::CommandLine(const std::vector<std::string>& arguments, const std::vector<Option>& options) {
    const OptionTable table(options);
    std::vector<std::string> texts = arguments;
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (auto& text : texts)
        pointers.push_back(text.data());
    const int count = static_cast<int>(pointers.size());
    pointers.push_back(nullptr);
    optind = 0; // Starts the scan anew.
    opterr = 0;
    for (;;) {
        const int number =
            getopt_long(count, pointers.data(), table.shortOptions.c_str(), table.longOptions.data(), nullptr);
        if (number == -1)
            break;
        if (number == '?' || number == ':') {
            const char* const argument = pointers[static_cast<std::size_t>(optind - 1)];
            throw located(UsageError(getProblem(number, argument, options)), BRINDLE_HERE);
        }
        _values[getOption(options, number).name] = optarg ? optarg : "";
    }
    const auto operandCount = static_cast<std::size_t>(count - optind);
    for (const char* operand : std::span(pointers).subspan(static_cast<std::size_t>(optind), operandCount))
        _operands.emplace_back(operand);
}

std::optional<std::string> CommandLine::find(std::string_view option) const {
    const auto value = _values.find(option);
    return value == _values.end() ? std::nullopt : std::optional(value->second);
}

std::string CommandLine::get(std::string_view option) const {
    if (const auto value = find(option))
        return *value;
    throw located(UsageError("Option --" + std::string(option) + " is missing"), BRINDLE_HERE);
}

std::string CommandLine::getOperand(std::string_view name) const {
    requireOperands(name);
    if (_operands.size() == 1)
        return _operands.front();
    throw located(UsageError(std::string(name) + " should be given once, in quotes when it holds blanks"),
                  BRINDLE_HERE);
}

void CommandLine::requireOperands(std::string_view name) const {
    if (_operands.empty())
        throw located(UsageError(std::string(name) + " is missing"), BRINDLE_HERE);
}

void CommandLine::requireNoOperand() const {
    if (!_operands.empty())
        throw located(UsageError("Unexpected " + inQuotes(_operands.front())), BRINDLE_HERE);
}

} // namespace Brindle
