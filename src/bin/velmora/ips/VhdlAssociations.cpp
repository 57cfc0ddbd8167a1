#include <velmora/ips/VhdlAssociations.h>

namespace Velmora {

std::string getAssociations(const QStringList& texts) {
    QStringList associations;
    for (const QString& text : texts)
        associations += QString::number(associations.size()) + " => \"" + text + "\"";
    return associations.join(QStringLiteral(", ")).toStdString();
}

} // namespace Velmora
