#pragma once

#include <string>

namespace Velmora {

/// True for a VHDL hexadecimal bit-string literal of one digit or more, such as `x"0aF"`, in either case.
bool isHexadecimal(std::string text);

/// The VHDL hexadecimal bit-string literal of `value`, `bitCount` bits wide, with lower-case digits. Leading "f" digits
/// beyond the width are dropped, which makes a negative value fit in two's complement (and shortens a positive one as
/// well). Throws Brindle::InvalidRequest when `bitCount` is not a multiple of 4 and Brindle::Fatal, with the fields
/// "value" and "bitCount", when another digit would have to be dropped.
std::string getHexadecimal(int value, unsigned long bitCount);

/// The digital envelope, for all installed recipients, of one protected region of an HDL text in the language "vhdl" or
/// "vlog". Throws what Sealwork throws.
std::string getEncrypted(const std::string& language, const std::string& text);

/// The plain text of a sealed generator script. Throws what Sealwork throws.
std::string getDecrypted(const std::string& text);

} // namespace Velmora
