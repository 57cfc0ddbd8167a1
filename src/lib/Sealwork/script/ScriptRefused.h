#pragma once

#include <Brindle/core/Exception.h>

namespace Sealwork {

/// Why a sealed script is not opened.
enum class ScriptFault {
    NotSealed,
    UnsupportedFormat,
    Malformed,
    KeyNotInstalled,
    Altered, ///< Tag or signature are wrong.
    NotSigned,
    UnknownSigner,
};

/// A sealed script is not opened: "Script refused: " and the reason.
class ScriptRefused : public Brindle::Fatal {
public:
    explicit ScriptRefused(ScriptFault fault);

    ScriptFault getFault() const { return _fault; }

private:
    ScriptFault _fault;
};

} // namespace Sealwork
