#include <velmora/rules/VhdlEntities.h>

#include <velmora/rules/HdlTokens.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <optional>

namespace Velmora {

namespace {

template <std::size_t size>
bool isOneOf(std::string_view text, const std::array<std::string_view, size>& words) {
    return std::ranges::any_of(words, [text](std::string_view word) { return isSameVhdlName(text, word); });
}

constexpr std::array<std::string_view, 3> objectClasses{"constant", "signal", "variable"};
constexpr std::array<std::string_view, 5> modes{"in", "out", "inout", "buffer", "linkage"};

/// Of a generic that is no value the type says what it is.
constexpr std::array<std::string_view, 6> otherGenerics{"type", "package", "function", "procedure", "pure", "impure"};

HdlObject readOtherGeneric(HdlTokenWalk walk) {
    HdlObject object;
    const auto ahead = isSameVhdlName(walk.peek(1), "function") ? 2U : 1U; // behind "pure" or "impure"
    object.name = walk.peek(ahead);
    object.type = join(walk.takeUntil({}));
    return object;
}

/// A string or extended name that its line does not end.
bool isOpen(const HdlToken& token) {
    const char first = token.text.front();
    return (first == '"' || first == '\\') && (token.text.size() == 1 || token.text.back() != first);
}

/// Appends what an element of an interface list declares; false when it declares nothing.
bool readDeclaration(const HdlTokens& tokens, std::vector<HdlObject>& objects, bool areGenerics) {
    if (std::ranges::any_of(tokens, isOpen))
        return false;
    HdlTokenWalk walk(tokens);
    if (areGenerics && isOneOf(walk.peek(), otherGenerics)) {
        objects.push_back(readOtherGeneric(walk));
        return true;
    }
    if (isOneOf(walk.peek(), objectClasses))
        walk.skip();
    std::vector<std::string> names;
    do {
        if (!isHdlName(walk.peek()))
            return false;
        names.emplace_back(walk.peek());
        walk.skip();
    } while (walk.take(","));
    if (!walk.take(":"))
        return false;
    HdlObject object{{}, "in", {}, {}};
    if (isOneOf(walk.peek(), modes)) {
        object.mode = walk.peek();
        walk.skip();
    }
    HdlTokens type = walk.takeUntil({":="});
    if (!type.empty() && isSameVhdlName(type.back().text, "bus"))
        type.pop_back();
    object.type = join(type);
    if (walk.take(":="))
        object.value = join(walk.takeUntil({}));
    for (const std::string& name : names) {
        object.name = name;
        objects.push_back(object);
    }
    return !object.type.empty();
}

/// Reads "( declaration ; ... ) ;" behind the word, if it is there; false when the list is none.
bool readInterface(HdlTokenWalk& walk, std::string_view word, std::vector<HdlObject>& objects) {
    if (!isSameVhdlName(walk.peek(), word) || walk.peek(1) != "(")
        return true;
    walk.skip();
    do {
        walk.skip(); // the parenthesis or semicolon in front
        if (!readDeclaration(walk.takeUntil({";", ")"}), objects, isSameVhdlName(word, "generic")))
            return false;
    } while (walk.peek() == ";");
    return walk.take(")") && walk.take(";");
}

/// Behind "entity NAME is".
std::optional<HdlUnit> readEntity(HdlTokenWalk walk, HdlUnit unit) {
    const bool isRead = readInterface(walk, "generic", unit.generics) && readInterface(walk, "port", unit.ports);
    return isRead ? std::optional(unit) : std::nullopt;
}

bool isClause(const HdlTokenWalk& walk) {
    return isSameVhdlName(walk.peek(), "library") || isSameVhdlName(walk.peek(), "use") ||
           (isSameVhdlName(walk.peek(), "context") && !isSameVhdlName(walk.peek(2), "is"));
}

bool isEntity(const HdlTokenWalk& walk) {
    return isSameVhdlName(walk.peek(), "entity") && isHdlName(walk.peek(1)) && isSameVhdlName(walk.peek(2), "is");
}

} // namespace

std::vector<HdlUnit> readVhdlEntities(std::string_view text) {
    const HdlTokens tokens = tokenizeVhdl(text);
    std::vector<HdlUnit> units;
    std::vector<std::string> context; // in front of what comes next
    for (HdlTokenWalk walk(tokens); !walk.isAtEnd(); walk.take(";")) {
        if (isClause(walk)) {
            context.push_back(join(walk.takeUntil({";"})) + ";");
            continue;
        }
        if (isEntity(walk)) {
            HdlUnit head;
            head.name = walk.peek(1);
            head.context = context;
            walk.skip(3);
            if (auto unit = readEntity(walk, std::move(head)))
                units.push_back(std::move(*unit));
        }
        context.clear();
        walk.takeUntil({";"});
    }
    return units;
}

} // namespace Velmora
