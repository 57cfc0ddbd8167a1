#pragma once

#include <Sealwork/base/SecureBuffer.h>
#include <Sealwork/envelope/Envelope.h>
#include <Sealwork/envelope/EnvelopeKey.h>

namespace Sealwork {

/// Opens envelopes with the private key of one of their recipients.
class EnvelopeOpener {
public:
    /// The key is kept, not owned.
    explicit EnvelopeOpener(const EnvelopeKey& key) : _key(key) {}

    /// The region's text. An envelope that carries an authentication code is deciphered only after the code has been
    /// found right; a foreign one without is deciphered as it is. Throws EnvelopeRefused.
    SecureBuffer open(const Envelope& envelope) const;

private:
    const EnvelopeKey& _key;
};

} // namespace Sealwork
