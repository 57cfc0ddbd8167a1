#include <velmora/Clock.h>

#include <QDateTime>

namespace Velmora {

std::string getDateLabel() {
    return QDateTime::currentDateTime().toString(QStringLiteral("dd/MM/yyyy - hh:mm")).toStdString();
}

} // namespace Velmora
