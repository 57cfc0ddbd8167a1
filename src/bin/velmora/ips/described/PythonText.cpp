#include <velmora/ips/described/PythonText.h>

namespace Velmora {

namespace {

std::string join(const std::vector<std::string>& elements) {
    std::string joined;
    for (const std::string& element : elements)
        joined += (joined.empty() ? "" : ", ") + element;
    return joined;
}

} // namespace

std::string toPythonText(std::string_view text) {
    std::string literal = "\"";
    for (const char character : text) {
        if (character == '"' || character == '\\')
            literal += '\\';
        literal += character;
    }
    return literal + '"';
}

std::string toPythonTuple(const std::vector<std::string>& elements) {
    return "(" + join(elements) + (elements.size() == 1 ? ",)" : ")");
}

std::string toPythonList(const std::vector<std::string>& elements) {
    return "[" + join(elements) + "]";
}

} // namespace Velmora
