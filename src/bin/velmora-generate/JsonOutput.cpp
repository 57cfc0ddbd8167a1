#include <velmora-generate/JsonOutput.h>

#include <Brindle/core/Console.h>
#include <Brindle/core/Exception.h>

#include <cstdint>

namespace GenerateTool {

JsonOutput::JsonOutput() {
    Brindle::console.setQuiet(true);
}

JsonOutput::~JsonOutput() {
    Brindle::console.setQuiet(false);
}

void JsonOutput::write(const QJsonDocument& document) const {
    const QByteArray text = document.toJson();
    const std::span bytes(reinterpret_cast<const std::uint8_t*>(text.data()), static_cast<std::size_t>(text.size()));
    if (!_output.get().write(bytes))
        throw Brindle::located(Brindle::Fatal("Unable to write to standard output"), BRINDLE_HERE);
}

} // namespace GenerateTool
