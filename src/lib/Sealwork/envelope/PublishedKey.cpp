#include <Sealwork/envelope/PublishedKey.h>

#include <Brindle/core/TextLines.h>
#include <Sealwork/base/Base64LineEncoder.h>
#include <Sealwork/envelope/EnvelopeDirective.h>
#include <Sealwork/keys/Recipient.h>

#include <vector>

namespace Sealwork {

namespace {

std::optional<PublishedKey> makeKey(std::string_view pem, std::string owner, std::string name) {
    auto key = AsymmetricKey::parsePublic(pem);
    if (!key)
        return std::nullopt;
    return PublishedKey{std::move(*key), std::move(owner), std::move(name)};
}

std::optional<PublishedKey> parsePem(std::string_view text, std::size_t pemBegin) {
    const auto content = Brindle::withLineFeeds(text.substr(0, pemBegin));
    Brindle::TextLines lines(content);
    std::string owner;
    std::string name;
    while (const auto line = lines.next()) {
        if (const auto value = Brindle::getFieldValue(line, Recipient::ownerField))
            owner = *value;
        if (const auto value = Brindle::getFieldValue(line, Recipient::nameField))
            name = *value;
    }
    return makeKey(text.substr(pemBegin), std::move(owner), std::move(name));
}

/// The PEM form of the base64 text that follows a `key_public_key` directive, up to an empty line or the next
/// directive.
std::optional<std::string> takePem(std::string_view rest) {
    const auto content = Brindle::withLineFeeds(rest.substr(0, rest.find('`')));
    const auto bytes = decodeBase64Text(std::string_view(content).substr(0, content.find("\n\n")));
    if (!bytes)
        return std::nullopt;
    std::string pem(AsymmetricKey::publicBegin);
    pem += '\n';
    appendBase64Lines(pem, *bytes);
    return pem.append(AsymmetricKey::publicEnd).append("\n");
}

std::optional<PublishedKey> parseDirectives(std::string_view text) {
    std::string owner;
    std::string name;
    std::optional<PublishedKey> key;
    BacktickLines lines(text);
    while (const auto line = lines.next()) {
        const auto body = getDirectiveBody(line->text);
        const auto expressions = body ? parseExpressions(*body) : std::nullopt;
        for (const auto& expression : expressions.value_or(std::vector<DirectiveExpression>())) {
            if (expression.name == "key_keyowner")
                owner = expression.value;
            if (expression.name == "key_keyname")
                name = expression.value;
            if (expression.name != "key_public_key")
                continue;
            const auto pem = takePem(text.substr(line->end));
            if (key || !pem)
                return std::nullopt;
            key = makeKey(*pem, owner, name);
        }
    }
    return key;
}

} // namespace

std::optional<PublishedKey> PublishedKey::parse(std::string_view text) {
    const auto pemBegin = text.find(AsymmetricKey::publicBegin);
    return pemBegin != text.npos ? parsePem(text, pemBegin) : parseDirectives(text);
}

} // namespace Sealwork
