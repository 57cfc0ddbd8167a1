#include <velmora/rules/ProtectedRegions.h>

#include <Brindle/core/Exception.h>

namespace Velmora {

namespace {

constexpr std::string_view beginMarker = "`protect begin";
constexpr std::string_view endMarker = "`protect end";
constexpr std::string_view markerStart = "`protect "; ///< Of both.

struct Marker {
    std::size_t begin = 0; ///< Offset of its line.
    std::size_t end = 0;   ///< Offset of the next line.
    bool isBegin = false;  ///< Of a region; a line that holds both markers is a begin.
};

/// The first line with a marker from the offset on.
std::optional<Marker> findMarker(std::string_view text, std::size_t position) {
    for (;;) {
        const auto start = text.find(markerStart, position);
        if (start == text.npos)
            return std::nullopt;
        Marker marker;
        marker.begin = text.rfind('\n', start) + 1; // `npos` + 1 is 0, the first line.
        marker.end = text.find('\n', start) + 1;
        const auto line = text.substr(marker.begin, marker.end - marker.begin);
        marker.isBegin = line.find(beginMarker) != line.npos;
        if (marker.isBegin || line.find(endMarker) != line.npos)
            return marker;
        position = marker.end;
    }
}

} // namespace

std::string getLanguage(std::string_view filename) {
    return filename.ends_with(".v") || filename.ends_with(".vh") ? "vlog" : "vhdl";
}

std::optional<RegionWalk::Piece> RegionWalk::next() {
    if (_position == _text.size())
        return std::nullopt;
    Piece piece{{}, _isOpen, _position};
    const auto marker = findMarker(_text, _position);
    if (!marker) {
        piece.text = _text.substr(_position);
        _position = _text.size();
        return _isOpen ? std::nullopt : std::optional(piece);
    }
    _marker = marker->begin;
    if (marker->isBegin && _isOpen)
        throw Brindle::Fatal("Already encrypting");
    if (!marker->isBegin && !_isOpen)
        throw Brindle::Fatal("No \"`protect begin\" found");
    piece.text = _text.substr(_position, marker->begin - _position);
    _position = marker->end;
    _isOpen = marker->isBegin;
    return piece;
}

std::string protectRegions(std::string_view text, const std::string& language, const RegionCipher& encipher) {
    std::string lines(text);
    lines += '\n';
    std::string output;
    output.reserve(lines.size());
    RegionWalk walk(lines);
    while (const auto piece = walk.next()) {
        if (piece->isRegion)
            output += encipher(language, std::string(piece->text));
        else
            output += piece->text;
    }
    return output;
}

} // namespace Velmora
