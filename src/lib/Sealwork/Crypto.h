#pragma once

#include <string>

namespace Sealwork {

/// The library's door for programs: opens sealed scripts and writes protected regions with the keys of the
/// installation (see KeyDirectory). The keys are read anew at each call. What a call fails with leaves its `out` as it
/// was.
class Crypto {
public:
    /// The only mode is 1, both directions. Throws InvalidRequest "Unknown mode" with the field "mode".
    explicit Crypto(int mode);

    /// Puts the envelope of one protected region of an HDL file in `out`. The only selector is -1, all installed
    /// recipients; the language is "vhdl" or "vlog"; the information block is 16 bytes and stays readable. Throws
    /// InvalidRequest "Unknown selector" with the field "selector", and what ProtectedRegion, SealConfiguration,
    /// RecipientKeys and EnvelopeWriter throw.
    void getEncrypted(int selector, const std::string& language, const std::string& info, const std::string& text,
                      std::string& out) const;

    /// Puts the plain text of a sealed script in `out`. The only selector is 0, the installed script keys. Throws
    /// InvalidRequest "Unknown selector" with the field "selector", and what ScriptKeys, SignerKeys and ScriptOpener
    /// throw.
    void getDecrypted(int selector, const std::string& in, std::string& out) const;
};

} // namespace Sealwork
