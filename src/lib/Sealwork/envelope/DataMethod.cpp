#include <Sealwork/envelope/DataMethod.h>

namespace Sealwork {

std::string_view getName(DataMethod method) {
    return method == DataMethod::Aes128Cbc ? "aes128-cbc" : "aes256-cbc";
}

std::optional<DataMethod> findDataMethod(std::string_view name) {
    for (const auto method : {DataMethod::Aes128Cbc, DataMethod::Aes256Cbc})
        if (getName(method) == name)
            return method;
    return std::nullopt;
}

std::size_t getKeySize(DataMethod method) {
    return method == DataMethod::Aes128Cbc ? 16 : 32;
}

} // namespace Sealwork
