#pragma once

#include <Sealwork/keys/Recipient.h>

#include <filesystem>
#include <vector>

namespace Sealwork {

/// All who can open what this installation protects, in the byte order of their file names.
class RecipientKeys {
public:
    /// Reads every `*.pem` of the directory. A file that is not fit for use is an error and never skipped: all
    /// recipients share one session key, so the weakest key opens the whole block. Throws what `listKeyFiles`,
    /// `readKeyFile`, `Recipient::parse` and `add` throw, and Fatal "No recipient key installed" with the field
    /// "directory".
    static RecipientKeys load(const std::filesystem::path& directory);

    /// Adds the recipient of that file behind the others. Throws Fatal "Recipient key refused: named twice" with the
    /// field "filename".
    void add(Recipient recipient, const std::filesystem::path& filename);

    const std::vector<Recipient>& getRecipients() const { return _recipients; }

private:
    std::vector<Recipient> _recipients;
};

} // namespace Sealwork
