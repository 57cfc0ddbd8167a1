#pragma once

#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace Velmora {

// A form as the file form.json beside the description file of an IP tells it. Texts are UTF-8.

struct DescribedText {
    std::string reset;
};

struct DescribedNumber {
    int minimum = 0;
    int maximum = 0;
    int reset = 0;
};

struct DescribedDecimal {
    double minimum = 0;
    double maximum = 0;
    double reset = 0;
    double step = 0;
    int decimals = 0; ///< Digits after the point.
};

struct DescribedChoice {
    struct Item {
        std::string text;  ///< What the user reads.
        std::string value; ///< What the script receives.
    };
    std::vector<Item> items;
    int reset = 0; ///< Place of an item.
};

struct DescribedCoefficients {
    std::string reset;
    std::string width; ///< Key of the number that gives the bits of a coefficient.
};

struct DescribedTable {
    struct Column {
        std::string title;
        std::string required; ///< Refuses an empty cell; empty when there may be one.
        std::variant<DescribedText, DescribedNumber, DescribedDecimal, DescribedChoice> kind;
    };
    std::string count; ///< Key of the number that counts the lines.
    std::vector<Column> columns;
};

struct DescribedRow {
    /// When the row can be filled in: while a choice shows one of the texts.
    struct Condition {
        std::string key;
        std::vector<std::string> texts;
    };
    using Kind = std::variant<DescribedText, DescribedNumber, DescribedDecimal, DescribedChoice, DescribedCoefficients,
                              DescribedTable>;

    std::string key;      ///< In the settings and in configurations.
    std::string label;    ///< Empty for a table.
    std::string help;     ///< Empty when there is none.
    std::string argument; ///< Under which the script receives the value.
    std::string required; ///< Refuses an empty value; empty when it may be.
    std::optional<Condition> enabled;
    Kind kind;
    int line = 0; ///< In the file, from 1.
};

struct DescribedSection {
    std::string title; ///< Empty for rows that stand in no section.
    std::vector<DescribedRow> rows;
};

struct FormDescription {
    std::string title;        ///< The first line of a generation on the console.
    bool isDirectory = false; ///< The script returns files, not one text.
    std::vector<DescribedSection> sections;
};

/// The row whose value names the output.
inline constexpr const char* entityKey = "Entity";

} // namespace Velmora
