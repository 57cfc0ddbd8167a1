#include <Sealwork/envelope/EnvelopeSeal.h>

#include <Sealwork/base/Hex.h>
#include <Sealwork/base/Sha256.h>
#include <Sealwork/envelope/ProtectedRegion.h>

namespace Sealwork {

namespace {

constexpr std::string_view beforeInfo = "Sealwork/1 info=";
constexpr std::string_view beforeMac = " mac=";
constexpr std::size_t infoDigits = 2 * ProtectedRegion::infoSize;
constexpr std::size_t macDigits = 2 * Sha256Digest().size();
constexpr std::size_t macPosition = beforeInfo.size() + infoDigits + beforeMac.size();

} // namespace

std::optional<EnvelopeSeal> EnvelopeSeal::parse(std::string_view agentInfo) {
    if (agentInfo.size() != macPosition + macDigits)
        return std::nullopt;
    EnvelopeSeal seal{std::string(agentInfo.substr(beforeInfo.size(), infoDigits)),
                      std::string(agentInfo.substr(macPosition))};
    if (!isLowerHex(seal.infoHex, infoDigits) || !isLowerHex(seal.macHex, macDigits) || seal.format() != agentInfo)
        return std::nullopt;
    return seal;
}

std::string EnvelopeSeal::format() const {
    std::string text(beforeInfo);
    return text.append(infoHex).append(beforeMac).append(macHex);
}

} // namespace Sealwork
