#include <velmora-seal/ExitCode.h>

#include <Sealwork/envelope/EnvelopeRefused.h>
#include <Sealwork/script/ScriptRefused.h>
#include <velmora-seal/MalformedInput.h>
#include <velmora-seal/NothingToOpen.h>
#include <velmora-seal/NothingToProtect.h>

namespace SealTool {

namespace {

ExitCode getExitCode(Sealwork::ScriptFault fault) {
    switch (fault) {
    case Sealwork::ScriptFault::UnsupportedFormat:
    case Sealwork::ScriptFault::Malformed:
        return ExitCode::Malformed;
    case Sealwork::ScriptFault::KeyNotInstalled:
        return ExitCode::NoKey;
    case Sealwork::ScriptFault::Altered:
        return ExitCode::Altered;
    case Sealwork::ScriptFault::NotSealed:
    case Sealwork::ScriptFault::NotSigned:
    case Sealwork::ScriptFault::UnknownSigner:
        return ExitCode::NothingOrUntrusted;
    }
    return ExitCode::UsageOrFile;
}

ExitCode getExitCode(Sealwork::EnvelopeFault fault) {
    switch (fault) {
    case Sealwork::EnvelopeFault::Malformed:
    case Sealwork::EnvelopeFault::UnsupportedMethod:
        return ExitCode::Malformed;
    case Sealwork::EnvelopeFault::NoKey:
        return ExitCode::NoKey;
    case Sealwork::EnvelopeFault::Altered:
        return ExitCode::Altered;
    }
    return ExitCode::UsageOrFile;
}

} // namespace

ExitCode getExitCode(const Brindle::Exception& exception) {
    if (const auto* script = dynamic_cast<const Sealwork::ScriptRefused*>(&exception))
        return getExitCode(script->getFault());
    if (const auto* envelope = dynamic_cast<const Sealwork::EnvelopeRefused*>(&exception))
        return getExitCode(envelope->getFault());
    if (dynamic_cast<const MalformedInput*>(&exception))
        return ExitCode::Malformed;
    if (dynamic_cast<const NothingToOpen*>(&exception))
        return ExitCode::NothingOrUntrusted;
    if (dynamic_cast<const NothingToProtect*>(&exception))
        return ExitCode::NoRegion;
    return ExitCode::UsageOrFile;
}

} // namespace SealTool
