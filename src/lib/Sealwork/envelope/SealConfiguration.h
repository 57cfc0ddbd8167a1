#pragma once

#include <Sealwork/envelope/DataMethod.h>

#include <filesystem>
#include <string_view>

namespace Sealwork {

/// What an installation chooses for its envelopes: lines "key = value"; empty lines and lines that begin with "#" say
/// nothing. The only key is "data_method", one of the names of DataMethod.
struct SealConfiguration {
    DataMethod dataMethod = DataMethod::Aes256Cbc;

    /// Reads the file; one that does not exist leaves everything at its default. Throws what `parse` and `readKeyFile`
    /// throw.
    static SealConfiguration load(const std::filesystem::path& filename);
    /// Throws Fatal "Bad seal configuration" with the fields "filename", "line" and "reason".
    static SealConfiguration parse(std::string_view text, const std::filesystem::path& filename);
};

} // namespace Sealwork
