#pragma once

#include <Sealwork/envelope/DataMethod.h>
#include <Sealwork/envelope/ProtectedRegion.h>
#include <Sealwork/envelope/SessionKey.h>
#include <Sealwork/keys/RecipientKeys.h>

#include <string>

namespace Sealwork {

/// Writes protected regions as digital envelopes of IEEE 1735 version 1.
class EnvelopeWriter {
public:
    /// The recipients are kept, not owned.
    EnvelopeWriter(const RecipientKeys& recipients, DataMethod method) : _recipients(recipients), _method(method) {}

    /// Adds to the text the lines that stand for the region in its file, the last one ended by a line feed. Throws
    /// Fatal "No random numbers available" and "Cryptography failure"; the text is then of no use.
    void append(std::string& out, const ProtectedRegion& region) const;
    /// The same with a session key that is given, which must fit the data method.
    void append(std::string& out, const ProtectedRegion& region, const SessionKey& session) const;

private:
    const RecipientKeys& _recipients;
    DataMethod _method;
};

} // namespace Sealwork
