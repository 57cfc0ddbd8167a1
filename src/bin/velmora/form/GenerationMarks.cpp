#include <velmora/form/GenerationMarks.h>

#include <Brindle/core/Console.h>

namespace Velmora {

GenerationMarks::GenerationMarks(const Form& form) : _form(form) {
    Brindle::console.attach(*this);
}

void GenerationMarks::onConsoleLine(Brindle::ConsoleLineKind kind, const std::string& line) {
    if (kind != Brindle::ConsoleLineKind::Error)
        return;
    const QString problem = QString::fromStdString(line).trimmed();
    _form.getMark().add(findParts(_form, problem), problem);
}

} // namespace Velmora
