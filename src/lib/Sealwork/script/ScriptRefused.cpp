#include <Sealwork/script/ScriptRefused.h>

namespace Sealwork {

namespace {

std::string getReason(ScriptFault fault) {
    switch (fault) {
    case ScriptFault::NotSealed:
        return "not a sealed script";
    case ScriptFault::UnsupportedFormat:
        return "unsupported format";
    case ScriptFault::Malformed:
        return "truncated or malformed";
    case ScriptFault::KeyNotInstalled:
        return "its key is not installed";
    case ScriptFault::Altered:
        return "altered after it was sealed";
    case ScriptFault::NotSigned:
        return "not signed";
    case ScriptFault::UnknownSigner:
        return "unknown signer";
    }
    return {};
}

} // namespace

ScriptRefused::ScriptRefused(ScriptFault fault) : Fatal("Script refused: " + getReason(fault)), _fault(fault) {}

} // namespace Sealwork
