#include <Sealwork/keys/KeyFile.h>

#include <Brindle/core/Exception.h>
#include <Brindle/files/FileDescriptor.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>

namespace Sealwork {

namespace {

constexpr std::size_t largestKeyFile = 65536;

bool isRegular(const Brindle::FileDescriptor& file) {
    struct stat status {};
    return fstat(file.get(), &status) == 0 && S_ISREG(status.st_mode);
}

} // namespace

std::vector<std::filesystem::path> listKeyFiles(const std::filesystem::path& directory, std::string_view extension) {
    std::vector<std::filesystem::path> files;
    std::error_code error;
    std::filesystem::directory_iterator entry(directory, error);
    for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
        const std::string name = entry->path().filename().string();
        if (name.ends_with(extension) && !name.starts_with('.'))
            files.push_back(entry->path());
    }
    if (error)
        throw Brindle::located(Brindle::Fatal("Unable to open key directory"), BRINDLE_HERE,
                               {{"filename", directory.string()}, {"reason", error.message()}});
    std::ranges::sort(files, {}, [](const std::filesystem::path& file) { return file.filename().native(); });
    return files;
}

SecureBuffer readKeyFile(const std::filesystem::path& filename) {
    // Without O_NONBLOCK the opening of a named pipe would wait for a writer.
    const Brindle::FileDescriptor file(open(filename.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!file.isOpen())
        refuseKeyFile(filename, std::strerror(errno), BRINDLE_HERE);
    if (!isRegular(file))
        refuseKeyFile(filename, "not a regular file", BRINDLE_HERE);
    SecureBuffer content(largestKeyFile + 1);
    const auto size = file.read(content);
    if (size < 0)
        refuseKeyFile(filename, std::strerror(errno), BRINDLE_HERE);
    if (static_cast<std::size_t>(size) > largestKeyFile)
        refuseKeyFile(filename, "larger than 64 KiB", BRINDLE_HERE);
    content.shrink(static_cast<std::size_t>(size));
    return content;
}

void refuseKeyFile(const std::filesystem::path& filename, std::string reason, const Brindle::Location& location) {
    throw Brindle::located(Brindle::Fatal("Unable to read key file"), location,
                           {{"filename", filename.string()}, {"reason", std::move(reason)}});
}

} // namespace Sealwork
