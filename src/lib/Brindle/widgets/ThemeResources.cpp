#include <Brindle/widgets/ThemeResources.h>

#include <Brindle/core/Exception.h>
#include <Brindle/widgets/QtLabel.h>

#include <QFile>

// Q_INIT_RESOURCE does not work inside a namespace, be it one without a name.
static void initializeBrindleResources() { // NOLINT(misc-use-anonymous-namespace)
    Q_INIT_RESOURCE(Brindle);
    Q_INIT_RESOURCE(BrindleImages);
}

namespace Brindle {

void ThemeResources::load() {
    [[maybe_unused]] static const bool loaded = (initializeBrindleResources(), true);
}

QByteArray ThemeResources::read(const QString& path) {
    load();
    QFile file(QStringLiteral(":/Brindle/") + path);
    if (!file.open(QIODevice::ReadOnly))
        throw located(InternalError("Unknown resource"), BRINDLE_HERE, {{"path", getLabel(path)}});
    return file.readAll();
}

} // namespace Brindle
