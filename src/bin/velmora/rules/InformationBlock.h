#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace Velmora {

/// The 16 bytes that an envelope carries in the clear about its making: integers in little-endian byte order.
struct InformationBlock {
    static constexpr std::size_t size = 16; ///< Bytes.
    static constexpr std::string_view ownTool = "velmora";
    static constexpr std::int32_t ownFormat = 42;

    std::int32_t minutes = 0; ///< Since 1970-01-01 00:00 UTC.
    std::string tool;         ///< Who made the envelope, 8 bytes at most.
    std::int32_t format = 0;

    /// What this program puts in an envelope that is made now.
    static InformationBlock now();
    /// None when the text is not of the block's size.
    static std::optional<InformationBlock> parse(std::string_view bytes);

    std::string getBytes() const;
};

} // namespace Velmora
