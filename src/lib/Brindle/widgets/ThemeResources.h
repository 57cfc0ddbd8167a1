#pragma once

#include <QByteArray>
#include <QString>

namespace Brindle {

/// What is compiled in below ":/Brindle/".
class ThemeResources {
public:
    /// Makes the resources known to Qt, which a static library has to ask for; later calls do nothing.
    static void load();
    /// The contents of a resource, by its path below ":/Brindle/"; an unknown one is an InternalError with the field
    /// "path".
    static QByteArray read(const QString& path);
};

} // namespace Brindle
