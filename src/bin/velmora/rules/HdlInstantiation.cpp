#include <velmora/rules/HdlInstantiation.h>

#include <velmora/rules/HdlTokens.h>
#include <velmora/rules/VhdlReservedWords.h>

#include <Brindle/core/Text.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <functional>
#include <map>
#include <string_view>

namespace Velmora {

namespace {

/// The name of a type or subtype without library, package and constraint, in lower case.
std::string getMark(const HdlObject& object) {
    std::string_view mark = object.type;
    mark = mark.substr(0, mark.find_first_of("( "));
    mark.remove_prefix(mark.rfind('.') + 1); // `npos` + 1 is 0
    return Brindle::toLower(mark);
}

/// A value for a generic that has none.
std::string getPlaceholder(const HdlObject& generic) {
    static const std::map<std::string_view, std::string_view, std::less<>> values{
        {"integer", "1"},   {"natural", "1"},     {"positive", "1"},     {"real", "0.0"}, {"boolean", "false"},
        {"string", "\"\""}, {"std_logic", "'0'"}, {"std_ulogic", "'0'"}, {"bit", "'0'"},  {"time", "1 ns"}};
    const HdlTokens tokens = tokenizeVhdl(generic.type);
    HdlTokenWalk walk(tokens);
    walk.takeUntil({"range", "RANGE"});
    if (!walk.isAtEnd()) {
        walk.skip();
        return join(walk.takeUntil({"to", "downto", "TO", "DOWNTO"}));
    }
    if (generic.type.find('(') != std::string::npos)
        return "(others => '0')";
    const auto found = values.find(getMark(generic));
    return std::string(found == values.end() ? generic.type + "'left" : found->second);
}

/// A vector type that a port leaves open, whose width is then the designer's.
bool isOpenVector(const HdlObject& port) {
    static constexpr std::array<std::string_view, 7> vectors{
        "std_logic_vector", "std_ulogic_vector", "bit_vector", "signed", "unsigned", "u_signed", "u_unsigned"};
    return port.type.find('(') == std::string::npos && std::ranges::find(vectors, getMark(port)) != vectors.end();
}

/// The object's name with blanks up to that width.
std::string getPadded(const HdlObject& object, std::size_t width) {
    return object.name + std::string(width - object.name.size(), ' ');
}

std::size_t getNameWidth(const std::vector<HdlObject>& objects) {
    std::size_t width = 0;
    for (const HdlObject& object : objects)
        width = std::max(width, object.name.size());
    return width;
}

std::string getDeclarations(const HdlUnit& unit) {
    std::string text;
    for (const HdlObject& generic : unit.generics) {
        const bool isGiven = !generic.value.empty();
        text += "constant " + getPadded(generic, getNameWidth(unit.generics)) + " : " + generic.type +
                " := " + (isGiven ? generic.value + ";" : getPlaceholder(generic) + "; -- to be chosen") + "\n";
    }
    for (const HdlObject& port : unit.ports) {
        text += "signal " + getPadded(port, getNameWidth(unit.ports)) + " : " + port.type +
                (isOpenVector(port) ? "(0 downto 0); -- its width is to be chosen" : ";") + "\n";
    }
    return text;
}

/// "  generic map (" and so on, each object with itself; nothing when there are none.
std::string getMap(std::string_view title, const std::vector<HdlObject>& objects) {
    std::string text;
    for (const HdlObject& object : objects)
        text +=
            (text.empty() ? "" : ",\n") + ("    " + getPadded(object, getNameWidth(objects)) + " => " + object.name);
    return text.empty() ? text : "\n  " + std::string(title) + " map (\n" + text + "\n  )";
}

/// No name of the unit's own; extended names do not make a part of another.
std::string getLabel(const HdlUnit& unit) {
    std::string label = unit.name.front() == '\\' ? "instance" : unit.name + "_instance";
    const auto isTaken = [&](const HdlObject& object) { return isSameVhdlName(object.name, label); };
    while (std::ranges::any_of(unit.ports, isTaken) || std::ranges::any_of(unit.generics, isTaken))
        label += "_1";
    return label;
}

/// "  port ( ... );" of a component, which needs no defaults.
std::string getList(std::string_view title, const std::vector<HdlObject>& objects) {
    std::string text;
    for (const HdlObject& object : objects) {
        text += (text.empty() ? "" : ";\n") +
                ("    " + getPadded(object, getNameWidth(objects)) + " : " + object.mode + " " + object.type);
    }
    return text.empty() ? text : "  " + std::string(title) + " (\n" + text + "\n  );\n";
}

std::string getComponent(const HdlUnit& unit) {
    return "component " + unit.name + "\n" + getList("generic", unit.generics) + getList("port", unit.ports) +
           "end component;\n";
}

/// A name of Verilog in VHDL, where reserved words and what is no basic identifier stand between backslashes.
std::string toVhdlName(const std::string& name) {
    const std::string_view plain = name.front() == '\\' ? std::string_view(name).substr(1) : name;
    const bool isBasic =
        std::isalpha(static_cast<unsigned char>(plain.empty() ? '\0' : plain.front())) && !plain.ends_with('_') &&
        plain.find("__") == plain.npos &&
        std::ranges::all_of(plain, [](char c) { return std::isalnum(static_cast<unsigned char>(c)) || c == '_'; }) &&
        !isVhdlReservedWord(plain);
    return isBasic ? std::string(plain) : "\\" + std::string(plain) + "\\";
}

bool isDecimal(std::string_view text) {
    return !text.empty() && std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
}

/// An integer expression; nothing where VHDL writes it in another way.
std::optional<std::string> toVhdlExpression(const HdlTokens& tokens) {
    static constexpr std::array<std::string_view, 6> symbols{"+", "-", "*", "/", "(", ")"};
    std::string text;
    for (const HdlToken& token : tokens) {
        const bool isName = isHdlName(token.text);
        if (!isName && !isDecimal(token.text) && std::ranges::find(symbols, token.text) == symbols.end())
            return std::nullopt;
        text += (token.isApart && !text.empty() ? " " : "") +
                (isName ? toVhdlName(std::string(token.text)) : std::string(token.text));
    }
    return text.empty() ? std::nullopt : std::optional(text);
}

/// "(7 downto 0)" of "[7:0]"; a range of other than numbers is taken to fall, as it does in nearly all designs.
std::optional<std::string> toVhdlRange(HdlTokenWalk& walk) {
    walk.skip();
    const HdlTokens left = walk.takeUntil({":", "]"});
    if (!walk.take(":"))
        return std::nullopt;
    const HdlTokens right = walk.takeUntil({"]"});
    walk.skip();
    const auto first = toVhdlExpression(left);
    const auto last = toVhdlExpression(right);
    if (!first || !last)
        return std::nullopt;
    const bool isRising = isDecimal(*first) && isDecimal(*last) &&
                          std::make_pair(first->size(), *first) < std::make_pair(last->size(), *last);
    return "(" + *first + (isRising ? " to " : " downto ") + *last + ")";
}

std::string toVhdlMode(const std::string& direction) {
    if (direction == "input")
        return "in";
    return direction == "output" ? "out" : "inout";
}

std::optional<HdlObject> toVhdlPort(const HdlObject& port) {
    static constexpr std::array<std::string_view, 10> words{"wire",     "reg",    "logic", "tri", "signed",
                                                            "unsigned", "supply", "uwire", "var", "bit"};
    HdlObject object{toVhdlName(port.name), toVhdlMode(port.mode), "std_logic", {}};
    const HdlTokens tokens = tokenizeVerilog(port.type);
    HdlTokenWalk walk(tokens);
    while (std::ranges::find(words, walk.peek()) != words.end())
        walk.skip();
    if (walk.peek() == "[") {
        const auto range = toVhdlRange(walk);
        if (!range)
            return std::nullopt;
        object.type = "std_logic_vector" + *range;
    }
    return walk.isAtEnd() && port.mode != "ref" ? std::optional(object) : std::nullopt;
}

std::optional<HdlObject> toVhdlGeneric(const HdlObject& parameter) {
    HdlObject object{toVhdlName(parameter.name), "in", "integer", {}};
    const HdlTokens value = tokenizeVerilog(parameter.value);
    const bool isText = value.size() == 1 && value.front().text.starts_with('"');
    if (isText)
        object.type = "string";
    const auto text = isText ? std::optional(parameter.value) : toVhdlExpression(value);
    const bool isNumber = parameter.type.empty() || parameter.type == "integer" || parameter.type == "int";
    if (!text || (!isNumber && !(isText && parameter.type == "string")) ||
        (isText && parameter.value.find('\\') != std::string::npos))
        return std::nullopt;
    object.value = *text;
    return object;
}

template <class Convert>
bool convertAll(std::vector<HdlObject>& objects, Convert convert) {
    for (HdlObject& object : objects) {
        const auto converted = convert(object);
        if (!converted)
            return false;
        object = *converted;
    }
    return true;
}

/// The module as the entity that a simulator makes of it.
std::optional<HdlUnit> toVhdl(HdlUnit unit) {
    unit.name = toVhdlName(unit.name);
    unit.context = {"library ieee;", "use ieee.std_logic_1164.all;"};
    if (!convertAll(unit.generics, toVhdlGeneric) || !convertAll(unit.ports, toVhdlPort))
        return std::nullopt;
    return unit;
}

} // namespace

std::optional<HdlInstantiation> getInstantiation(const HdlUnit& unit) {
    const auto entity = unit.isVerilog ? toVhdl(unit) : std::optional(unit);
    const auto isValue = [](const HdlObject& generic) { return generic.mode == "in"; };
    if (!entity || !std::ranges::all_of(entity->generics, isValue))
        return std::nullopt;
    HdlInstantiation parts;
    for (const std::string& clause : entity->context)
        parts.context += clause + "\n";
    parts.declarations = (unit.isVerilog ? getComponent(*entity) : std::string()) + getDeclarations(*entity);
    parts.statements = getLabel(*entity) + " : " + (unit.isVerilog ? "" : "entity work.") + entity->name +
                       getMap("generic", entity->generics) + getMap("port", entity->ports) + ";\n";
    return parts;
}

} // namespace Velmora
