#pragma once

#include <Sealwork/base/SecureBuffer.h>

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace Sealwork {

/// A secret key of 32 bytes under which scripts are sealed.
class ScriptKey {
public:
    static constexpr std::size_t keySize = 32; ///< Bytes.

    /// Reads a key file, which is named after its key. Throws what `readKeyFile` throws.
    static ScriptKey load(const std::filesystem::path& filename);
    /// 64 hexadecimal digits and a line feed.
    static std::optional<ScriptKey> parse(std::string_view text);
    /// A new key. Throws Fatal "No random numbers available".
    static ScriptKey make();

    /// Short identity of the raw key.
    const std::string& getId() const { return _id; }
    /// The name that the key's file must have: its identity and ".key".
    std::string getFileName() const { return _id + ".key"; }
    /// What `parse` reads.
    SecureBuffer getText() const;
    std::span<const std::uint8_t> getBytes() const { return _bytes; }

private:
    explicit ScriptKey(SecureBuffer bytes);

    SecureBuffer _bytes;
    std::string _id;
};

} // namespace Sealwork
