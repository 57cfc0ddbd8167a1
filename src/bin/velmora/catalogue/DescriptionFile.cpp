#include <velmora/catalogue/DescriptionFile.h>

#include <Brindle/core/Exception.h>
#include <Brindle/core/Label.h>
#include <Brindle/files/RegularFile.h>
#include <Brindle/widgets/Utf8.h>

#include <filesystem>
#include <system_error>
#include <utility>

namespace Velmora {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t largestDescription = 16UL * 1024 * 1024; // bytes

/// The paths of the subdirectories in the order in which the file system returns them; none when it cannot be read.
std::vector<std::string> subdirectoriesOf(const std::string& path) {
    std::vector<std::string> paths;
    std::error_code failure;
    for (fs::directory_iterator entry(path, failure), end; entry != end && !failure; entry.increment(failure)) {
        if (std::error_code unknown; entry->is_directory(unknown))
            paths.push_back(entry->path().string());
    }
    return paths;
}

} // namespace

std::vector<std::string> findDescriptionFiles(const std::string& prefix) {
    std::vector<std::string> filenames;
    for (const std::string& provider : subdirectoriesOf(prefix + "/share/velmora")) {
        for (const std::string& ip : subdirectoriesOf(provider)) {
            std::string filename = ip + "/config";
            if (std::error_code failure; fs::exists(filename, failure))
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
