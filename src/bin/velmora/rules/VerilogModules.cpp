#include <velmora/rules/VerilogModules.h>

#include <velmora/rules/HdlTokens.h>

#include <algorithm>
#include <optional>

namespace Velmora {

namespace {

bool isDirection(std::string_view text) {
    return text == "input" || text == "output" || text == "inout" || text == "ref";
}

/// Name, type and default of "TYPE NAME DIMENSIONS = DEFAULT", where only the name is sure to be there.
std::optional<HdlObject> readDeclarator(const HdlTokens& tokens) {
    HdlTokenWalk walk(tokens);
    HdlTokens head = walk.takeUntil({"="});
    HdlTokens dimensions; // behind the name
    while (!head.empty() && head.back().text == "]") {
        const auto opening = std::ranges::find(head.rbegin(), head.rend(), std::string_view("["), &HdlToken::text);
        if (opening == head.rend())
            return std::nullopt;
        const auto begin = opening.base() - 1;
        dimensions.insert(dimensions.begin(), begin, head.end());
        head.erase(begin, head.end());
    }
    if (head.empty() || !isHdlName(head.back().text))
        return std::nullopt;
    HdlObject object;
    object.name = head.back().text;
    head.pop_back();
    head.insert(head.end(), dimensions.begin(), dimensions.end());
    object.type = join(head);
    if (walk.take("="))
        object.value = join(walk.takeUntil({}));
    return object;
}

void skipAttributes(HdlTokenWalk& walk) {
    while (walk.peek() == "(*") {
        while (!walk.isAtEnd() && walk.peek() != "*)")
            walk.skip();
        walk.skip();
    }
}

/// The tokens of one element of a list separated by commas.
HdlTokens takeElement(HdlTokenWalk& walk) {
    skipAttributes(walk);
    return walk.takeUntil({",", ")", ";"});
}

/// Appends what a list of declarations declares, in which an element without direction and type goes on with those of
/// the one before. False when an element is none.
bool readDeclarations(HdlTokenWalk& walk, std::vector<HdlObject>& objects, std::string mode = {}) {
    std::string type;
    do {
        const HdlTokens element = takeElement(walk);
        HdlTokenWalk inside(element);
        const bool isNew = isDirection(inside.peek());
        if (isNew) {
            mode = inside.peek();
            inside.skip();
        }
        auto object = readDeclarator(inside.takeUntil({}));
        if (!object)
            return false;
        if (isNew || !object->type.empty() || type.empty())
            type = object->type;
        object->mode = mode;
        object->type = type;
        objects.push_back(std::move(*object));
    } while (walk.take(","));
    return true;
}

/// "#( parameter ... )", in which local parameters stand for nothing.
bool readParameters(HdlTokenWalk& walk, std::vector<HdlObject>& parameters) {
    walk.skip(2);
    bool isLocal = false;
    std::string type;
    do {
        const HdlTokens element = takeElement(walk);
        if (element.empty())
            continue;
        HdlTokenWalk inside(element);
        const bool isNew = inside.peek() == "parameter" || inside.peek() == "localparam";
        if (isNew) {
            isLocal = inside.peek() == "localparam";
            inside.skip();
        }
        auto parameter = readDeclarator(inside.takeUntil({}));
        if (!parameter)
            return false;
        if (isNew || !parameter->type.empty())
            type = parameter->type;
        parameter->type = type;
        if (!isLocal)
            parameters.push_back(std::move(*parameter));
    } while (walk.take(","));
    return walk.take(")");
}

/// Of a head that lists names alone the body tells the rest.
void complete(std::vector<HdlObject>& ports, const std::vector<HdlObject>& declared) {
    for (HdlObject& port : ports) {
        const auto found = std::ranges::find(declared, port.name, &HdlObject::name);
        if (found != declared.end())
            port = *found;
    }
}

/// The statements up to the end of the module: its ports' directions, and its parameters unless the head has some.
bool readBody(HdlTokenWalk& walk, HdlUnit& unit) {
    const bool hasParameters = !unit.generics.empty();
    std::vector<HdlObject> declared;
    while (!walk.isAtEnd() && walk.peek() != "endmodule") {
        skipAttributes(walk);
        const std::string mode(walk.peek());
        if (mode == "function" || mode == "task") {
            while (!walk.isAtEnd() && walk.peek() != "end" + mode)
                walk.skip();
        } else if (isDirection(mode)) {
            if (!readDeclarations(walk, declared))
                return false;
        } else if (mode == "parameter" && !hasParameters) {
            walk.skip();
            if (!readDeclarations(walk, unit.generics))
                return false;
        } else {
            walk.skip();
        }
    }
    complete(unit.ports, declared);
    return std::ranges::none_of(unit.ports, [](const HdlObject& port) { return port.mode.empty(); });
}

/// Behind the word "module".
std::optional<HdlUnit> readModule(HdlTokenWalk& walk) {
    if (walk.peek() == "automatic" || walk.peek() == "static")
        walk.skip();
    HdlUnit unit;
    unit.isVerilog = true;
    unit.name = walk.peek();
    walk.skip();
    while (walk.peek() == "import") {
        walk.takeUntil({";"});
        walk.skip();
    }
    if (!isHdlName(unit.name) || (walk.peek() == "#" && walk.peek(1) == "(" && !readParameters(walk, unit.generics)))
        return std::nullopt;
    if (walk.take("(") && walk.peek() != ")" && !readDeclarations(walk, unit.ports))
        return std::nullopt;
    walk.take(")");
    return walk.take(";") && readBody(walk, unit) ? std::optional(unit) : std::nullopt;
}

} // namespace

std::vector<HdlUnit> readVerilogModules(std::string_view text) {
    const HdlTokens tokens = tokenizeVerilog(text);
    std::vector<HdlUnit> units;
    for (HdlTokenWalk walk(tokens); !walk.isAtEnd();) {
        const bool isHead = walk.peek() == "module" || walk.peek() == "macromodule";
        walk.skip();
        if (!isHead)
            continue;
        if (auto unit = readModule(walk))
            units.push_back(std::move(*unit));
    }
    return units;
}

} // namespace Velmora
