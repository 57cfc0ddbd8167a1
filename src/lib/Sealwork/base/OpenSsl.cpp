#include <Sealwork/base/OpenSsl.h>

#include <Brindle/core/Exception.h>

namespace Sealwork {

void require(bool succeeded, std::string_view operation, const Brindle::Location& location, const char* message) {
    if (succeeded)
        return;
    const char* reason = ERR_reason_error_string(ERR_peek_last_error());
    throw Brindle::located(Brindle::Fatal(message), location,
                           {{"operation", std::string(operation)}, {"reason", reason ? reason : "unknown"}});
}

Bio openText(std::string_view text) {
    Bio bio(BIO_new_mem_buf(text.data(), toInt(text.size())));
    require(bio != nullptr, "reading a text", BRINDLE_HERE);
    return bio;
}

SecureBuffer getContent(BIO& bio) {
    char* data = nullptr;
    const long size = BIO_get_mem_data(&bio, &data);
    return SecureBuffer(std::string_view(data, static_cast<std::size_t>(size)));
}

} // namespace Sealwork
