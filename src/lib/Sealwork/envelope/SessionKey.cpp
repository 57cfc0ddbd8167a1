#include <Sealwork/envelope/SessionKey.h>

#include <Sealwork/base/Random.h>

namespace Sealwork {

SessionKey SessionKey::make(DataMethod method) {
    SessionKey session{SecureBuffer(getKeySize(method)), {}};
    fillSecretRandom(session.key);
    fillRandom(session.initial);
    return session;
}

} // namespace Sealwork
