#include <Sealwork/envelope/EnvelopeRefused.h>

#include <Brindle/core/Label.h>

namespace Sealwork {

namespace {

std::string getReason(EnvelopeFault fault) {
    switch (fault) {
    case EnvelopeFault::Malformed:
        return "truncated or malformed";
    case EnvelopeFault::UnsupportedMethod:
        return "unsupported data method";
    case EnvelopeFault::NoKey:
        return "no key block is for a key of this length";
    case EnvelopeFault::Altered:
        return "altered after it was protected, or protected for other keys";
    }
    return {};
}

} // namespace

EnvelopeRefused::EnvelopeRefused(EnvelopeFault fault) : Fatal("Envelope refused: " + getReason(fault)), _fault(fault) {}

void refuseMalformed(std::size_t line, std::string reason, const Brindle::Location& location) {
    throw Brindle::located(EnvelopeRefused(EnvelopeFault::Malformed), location,
                           {{"line", Brindle::getLabel(line)}, {"reason", std::move(reason)}});
}

} // namespace Sealwork
