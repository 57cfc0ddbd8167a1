#include <velmora/rules/InformationBlock.h>

#include <chrono>
#include <utility>

namespace Velmora {

namespace {

constexpr std::size_t toolOffset = 4;
constexpr std::size_t toolSize = 8;
constexpr std::size_t formatOffset = toolOffset + toolSize;

void appendLittleEndian(std::string& block, std::int32_t number) {
    for (unsigned shift = 0; shift < 32; shift += 8)
        block += static_cast<char>(static_cast<std::uint32_t>(number) >> shift & 0xFFU);
}

std::int32_t getLittleEndian(std::string_view bytes) {
    std::uint32_t number = 0;
    for (unsigned index = 0; index < 4; ++index)
        number |= static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[index])) << 8 * index;
    return static_cast<std::int32_t>(number);
}

} // namespace

InformationBlock InformationBlock::now() {
    using namespace std::chrono;
    const auto sinceEpoch = duration_cast<seconds>(system_clock::now().time_since_epoch());
    std::string tool(ownTool);
    return {static_cast<std::int32_t>(sinceEpoch.count() / 60), std::move(tool), ownFormat};
}

std::optional<InformationBlock> InformationBlock::parse(std::string_view bytes) {
    if (bytes.size() != size)
        return std::nullopt;
    const auto tool = bytes.substr(toolOffset, toolSize);
    return InformationBlock{getLittleEndian(bytes), std::string(tool.substr(0, tool.find('\0'))),
                            getLittleEndian(bytes.substr(formatOffset))};
}

std::string InformationBlock::getBytes() const {
    std::string block;
    appendLittleEndian(block, minutes);
    block += tool;
    block.resize(formatOffset);
    appendLittleEndian(block, format);
    return block;
}

} // namespace Velmora
