#include <velmora-generate/Operands.h>

#include <velmora-generate/UsageError.h>

namespace GenerateTool {

void requireNoOperand(const QStringList& operands) {
    if (!operands.isEmpty())
        throw Brindle::located(UsageError("Unexpected '" + operands.first().toStdString() + "'"), BRINDLE_HERE);
}

QString requireOneIP(const QStringList& operands) {
    if (operands.size() == 1)
        return operands.first();
    throw Brindle::located(
        UsageError(operands.isEmpty() ? "The name of the IP is missing" : "Give one IP, a name with blanks in quotes"),
        BRINDLE_HERE);
}

void requireFiles(const QStringList& operands) {
    if (operands.isEmpty())
        throw Brindle::located(UsageError("The configuration file is missing"), BRINDLE_HERE);
}

} // namespace GenerateTool
