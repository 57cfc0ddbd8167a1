#include <velmora/catalogue/DescriptionFile.h>

#include <Brindle/core/Exception.h>
#include <Brindle/core/Label.h>
#include <Brindle/files/RegularFile.h>
#include <Brindle/widgets/Utf8.h>

#include <QDir>

#include <filesystem>
#include <system_error>
#include <utility>

namespace Velmora {

namespace {

constexpr std::size_t largestDescription = 16UL * 1024 * 1024; // bytes

/// The subdirectories in the order in which the file system returns them.
QStringList subdirectoriesOf(const QString& path) {
    return QDir(path).entryList(QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Unsorted);
}

} // namespace

std::vector<std::string> findDescriptionFiles(const std::string& prefix) {
    const QString root = QString::fromStdString(prefix + "/share/velmora");
    std::vector<std::string> filenames;
    for (const QString& provider : subdirectoriesOf(root)) {
        const QString providerPath = root + "/" + provider;
        for (const QString& ip : subdirectoriesOf(providerPath)) {
            std::string filename = QString(providerPath + "/" + ip + "/config").toStdString();
            if (std::error_code failure; std::filesystem::exists(filename, failure))
                filenames.push_back(std::move(filename));
        }
    }
    return filenames;
}

IPDescription readDescriptionFile(const std::string& filename) {
    if (filename.empty())
        throw Brindle::Critical("Empty filename");
    const auto file = Brindle::RegularFile::read(filename, largestDescription + 1);
    if (!file.isRead())
        throw Brindle::withFields(Brindle::Critical("Unable to open description file"), {{"filename", filename}});
    if (file.text.size() > largestDescription) {
        throw Brindle::withFields(Brindle::Critical("Description file is larger than 16 MiB"),
                                  {{"filename", filename}});
    }
    IPDescription description = parseIPDescription(file.text, filename);
    if (const auto line = Brindle::findLineOutsideUtf8(file.text)) {
        throw Brindle::withFields(Brindle::Critical("Line is not UTF-8, save the file in this encoding"),
                                  {{"filename", filename}, {"line", Brindle::getLabel(*line)}});
    }
    return description;
}

} // namespace Velmora
