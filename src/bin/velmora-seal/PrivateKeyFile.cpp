#include <velmora-seal/PrivateKeyFile.h>

#include <velmora-seal/Report.h>

#include <system_error>

namespace SealTool {

namespace fs = std::filesystem;

void warnOfReaders(const fs::path& privateFile) {
    const auto readers = fs::perms::group_read | fs::perms::others_read;
    std::error_code error;
    if ((fs::status(privateFile, error).permissions() & readers) != fs::perms::none)
        showProblem(privateFile.string() + ": warning: others can read this private key, chmod 600 hides it");
}

} // namespace SealTool
