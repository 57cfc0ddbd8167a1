#include <Sealwork/keys/RecipientKeys.h>

#include <Sealwork/keys/KeyFile.h>
#include <Sealwork/keys/RecipientRefused.h>

#include <algorithm>

namespace Sealwork {

RecipientKeys RecipientKeys::load(const std::filesystem::path& directory) {
    RecipientKeys keys;
    for (const auto& filename : listKeyFiles(directory, ".pem"))
        keys.add(Recipient::parse(readKeyFile(filename).text(), filename), filename);
    if (keys._recipients.empty())
        throw Brindle::located(Brindle::Fatal("No recipient key installed"), BRINDLE_HERE,
                               {{"directory", directory.string()}});
    return keys;
}

void RecipientKeys::add(Recipient recipient, const std::filesystem::path& filename) {
    const bool isKnown = std::ranges::any_of(_recipients, [&recipient](const Recipient& other) {
        return other.getOwner() == recipient.getOwner() && other.getName() == recipient.getName();
    });
    if (isKnown)
        throw Brindle::located(RecipientRefused("named twice"), BRINDLE_HERE, {{"filename", filename.string()}});
    _recipients.push_back(std::move(recipient));
}

} // namespace Sealwork
