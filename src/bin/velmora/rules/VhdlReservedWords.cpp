#include <velmora/rules/VhdlReservedWords.h>

#include <Brindle/core/Text.h>

#include <algorithm>
#include <array>

namespace Velmora {

namespace {

constexpr std::array<std::string_view, 103> reservedWords{
    "abs",          "access",    "after",      "alias",      "all",       "and",
    "architecture", "array",     "assert",     "attribute",  "begin",     "block",
    "body",         "buffer",    "bus",        "case",       "component", "configuration",
    "constant",     "context",   "default",    "disconnect", "downto",    "else",
    "elsif",        "end",       "entity",     "exit",       "file",      "for",
    "force",        "function",  "generate",   "generic",    "group",     "guarded",
    "if",           "impure",    "in",         "inertial",   "inout",     "is",
    "label",        "library",   "linkage",    "literal",    "loop",      "map",
    "mod",          "nand",      "new",        "next",       "nor",       "not",
    "null",         "of",        "on",         "open",       "or",        "others",
    "out",          "package",   "parameter",  "port",       "postponed", "procedure",
    "process",      "protected", "pure",       "range",      "record",    "register",
    "reject",       "release",   "rem",        "report",     "return",    "rol",
    "ror",          "select",    "severity",   "shared",     "signal",    "sla",
    "sll",          "sra",       "srl",        "subtype",    "then",      "to",
    "transport",    "type",      "unaffected", "units",      "until",     "use",
    "variable",     "wait",      "when",       "while",      "with",      "xnor",
    "xor"};

} // namespace

bool isVhdlReservedWord(std::string_view text) {
    return std::ranges::find(reservedWords, Brindle::toLower(text)) != reservedWords.end();
}

} // namespace Velmora
