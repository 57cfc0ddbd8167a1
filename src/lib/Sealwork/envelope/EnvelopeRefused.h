#pragma once

#include <Brindle/core/Exception.h>

namespace Sealwork {

/// Why an envelope is not opened.
enum class EnvelopeFault {
    Malformed,
    UnsupportedMethod,
    NoKey,   ///< Of this length.
    Altered, ///< Or for other keys of this length: telling which would help whoever tries alterations.
};

/// An envelope is not opened: "Envelope refused: " and the reason.
class EnvelopeRefused : public Brindle::Fatal {
public:
    explicit EnvelopeRefused(EnvelopeFault fault);

    EnvelopeFault getFault() const { return _fault; }

private:
    EnvelopeFault _fault;
};

/// Throws EnvelopeRefused "truncated or malformed" with the fields "line" and "reason". The location is the caller's.
[[noreturn]] void refuseMalformed(std::size_t line, std::string reason, const Brindle::Location& location);

} // namespace Sealwork
