#include <velmora/ips/described/FormDescriptionFile.h>

#include <velmora/ips/described/FormDescriptionText.h>

#include <Brindle/core/Exception.h>
#include <Brindle/files/RegularFile.h>

#include <QFileInfo>

namespace Velmora {

namespace {

FormDescription read(const std::string& filename, const IPDescription& ip) {
    const auto file = Brindle::RegularFile::read(filename, largestFormDescription + 1);
    if (!file.isRead()) {
        throw Brindle::withFields(Brindle::Critical("Unable to open form description"), {{"reason", file.reason}});
    }
    if (file.text.size() > largestFormDescription)
        throw Brindle::Critical("Form description is larger than 1 MiB");
    if (ip.scriptFilename.empty())
        throw Brindle::Critical("The IP has a form, but its description file names no script");
    return parseFormDescription(file.text);
}

} // namespace

bool hasFormDescription(const IPDescription& ip) {
    const QFileInfo file(QString::fromStdString(ip.formFilename));
    return file.exists() || file.isSymLink();
}

std::optional<FormDescription> readFormDescription(const IPDescription& ip) {
    if (!hasFormDescription(ip))
        return std::nullopt;
    try {
        return read(ip.formFilename, ip);
    } catch (const Brindle::Critical& exception) {
        Brindle::Critical named =
            Brindle::withFields(Brindle::Critical(exception.getMessage()), {{"filename", ip.formFilename}});
        for (const auto& [name, value] : exception.getFields())
            named.addField(name, value);
        throw Brindle::Critical(named);
    }
}

} // namespace Velmora
