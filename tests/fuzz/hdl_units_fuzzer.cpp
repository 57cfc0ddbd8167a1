#include <fuzz/Property.h>

#include <velmora/rules/HdlInstantiation.h>
#include <velmora/rules/VerilogModules.h>
#include <velmora/rules/VhdlEntities.h>

#include <cstdint>
#include <string>

namespace {

using Velmora::HdlObject;
using Velmora::HdlUnit;

std::string writeList(const char* word, const std::vector<HdlObject>& objects) {
    std::string text;
    for (const HdlObject& object : objects) {
        const std::string value = object.value.empty() ? "" : " := " + object.value;
        text += (text.empty() ? "" : "; -- next\n") + object.name + " : " + object.mode + " " + object.type + value;
    }
    return text.empty() ? text : std::string(word) + "(" + text + ");\n";
}

/// What was read of an entity, written as another entity, reads the same.
void checkEntity(const HdlUnit& unit) {
    for (const HdlObject& generic : unit.generics) {
        if (generic.mode.empty()) // a type or subprogram
            return;
    }
    std::string text = "entity " + unit.name + " is\n" + writeList("generic", unit.generics) +
                       writeList("port", unit.ports) + "end;\n";
    const auto units = Velmora::readVhdlEntities(text);
    require(units.size() == 1 && units[0].name == unit.name, "the entity is read again");
    require(units[0].generics == unit.generics && units[0].ports == unit.ports, "so are its objects");
}

void checkUnits(const std::vector<HdlUnit>& units, std::string_view text) {
    for (const HdlUnit& unit : units) {
        require(!unit.name.empty() && text.find(unit.name) != text.npos, "a unit has a name of the text");
        for (const HdlObject& port : unit.ports)
            require(!port.mode.empty() && text.find(port.name) != text.npos, "a port has a mode and such a name");
        Velmora::getInstantiation(unit);
        if (!unit.isVerilog)
            checkEntity(unit);
    }
}

} // namespace

/// The input is an HDL text, which is read as either language.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    checkUnits(Velmora::readVhdlEntities(text), text);
    checkUnits(Velmora::readVerilogModules(text), text);
    if (text.find("end_protected") == text.npos) {
        const std::string hidden = "`protect begin_protected\n" + std::string(text) + "\n`protect end_protected\n";
        require(Velmora::readVhdlEntities(hidden).empty() && Velmora::readVerilogModules(hidden).empty(),
                "nothing is read of what is enciphered");
    }
    return 0;
}
