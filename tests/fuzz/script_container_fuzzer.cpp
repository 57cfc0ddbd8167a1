#include <fuzz/Property.h>

#include <Brindle/core/TextLines.h>
#include <Sealwork/script/ScriptContainer.h>
#include <Sealwork/script/ScriptRefused.h>

#include <cstdint>

/// The input is the text of a sealed script.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using Sealwork::ScriptContainer;
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    try {
        const auto container = ScriptContainer::parse(text);
        require(container.format() == Brindle::withLineFeeds(text), "there is one text for each content");
        require(container.signerId.has_value() == container.signature.has_value(), "a signer has signed");
        require(ScriptContainer::isSealed(text), "what can be read begins as it should");
        require(container.payload.size() >= ScriptContainer::tagSize && container.payload.size() < size,
                "no byte is invented");
    } catch (const Sealwork::ScriptRefused& refusal) {
        require(ScriptContainer::isSealed(text) == (refusal.getFault() != Sealwork::ScriptFault::NotSealed),
                "the refusal tells whether it is a sealed script at all");
    }
    return 0;
}
