#include <Quillon/Object.h>

namespace Quillon {

std::unique_ptr<Record> Object::_getRecord() const {
    return _isReportable ? std::make_unique<Record>(getAlias()) : nullptr;
}

} // namespace Quillon
