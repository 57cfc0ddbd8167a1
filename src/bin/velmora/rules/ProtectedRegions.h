#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace Velmora {

/// The HDL language of a generated file: "vlog" when its name ends with ".v" or ".vh", otherwise "vhdl".
std::string getLanguage(std::string_view filename);

/// Walks the regions of an HDL text: the lines between one holding "`protect begin" and the next one holding "`protect
/// end". The lines of the markers belong to nothing.
class RegionWalk {
public:
    /// A run of whole lines, possibly none.
    struct Piece {
        std::string_view text;
        bool isRegion = false; ///< To be enciphered.
        std::size_t begin = 0; ///< Offset in the whole text.
    };

    /// Every line of the text must end with a line feed, and the text outlive the walk.
    explicit RegionWalk(std::string_view text) : _text(text) {}

    /// The next piece; none at the end, in front of which a region that is still open is passed over. Throws
    /// Brindle::Fatal when the markers are out of order.
    std::optional<Piece> next();

    /// Offset of the marker that was found last; at the end, when `isOpen`, that of the region left open.
    std::size_t getMarker() const { return _marker; }
    /// True between a region's begin and its end.
    bool isOpen() const { return _isOpen; }

private:
    std::string_view _text;
    std::size_t _position = 0;
    std::size_t _marker = 0;
    bool _isOpen = false;
};

/// Enciphers one region; called with the language and the region's lines.
using RegionCipher = std::function<std::string(const std::string& language, const std::string& region)>;

/// The text with every region replaced by what the cipher makes of it; the marker lines are dropped and every other
/// line ends with a line feed. A region that is still open at the end is dropped. Throws what RegionWalk throws.
std::string protectRegions(std::string_view text, const std::string& language, const RegionCipher& encipher);

} // namespace Velmora
