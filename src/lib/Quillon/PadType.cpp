#include <Quillon/PadType.h>

#include <Brindle/collections/ListCollection.h>

#include <array>
#include <list>

namespace Quillon {

namespace {

constexpr std::array concreteNames{// single-ended
                                   "LVTTL_3.3V", "LVCMOS_3.3V", "LVCMOS_2.5V", "LVCMOS_1.8V", "LVCMOS_1.5V",
                                   "LVCMOS_1.2V", "PCI_3.3V", "SSTL_2.5V_I", "SSTL_2.5V_II", "SSTL_1.8V_I",
                                   "SSTL_1.8V_II", "SSTL_1.5V", "HSTL_1.8V_I", "HSTL_1.8V_II", "HSTL_1.5V_I",
                                   "HSTL_1.5V_II",
                                   // differential
                                   "LVDS_3.3V", "LVDS_2.5V", "LVDS_1.8V", "BLVDS_2.5V", "MLVDS_2.5V", "RSDS_2.5V",
                                   "LVPECL_3.3V", "LVPECL_2.5V", "TMDS_3.3V"};

} // namespace

Brindle::Collection<PadType> PadType::getConcretes() {
    std::list<PadType> padTypes;
    for (const char* name : concreteNames)
        padTypes.emplace_back(QLatin1String(name));
    return Brindle::ListCollection<PadType>(std::move(padTypes));
}

QString PadType::getVoltage() const {
    return _name.section(QLatin1Char('_'), 1, 1);
}

} // namespace Quillon
