#include <velmora-seal/TextFile.h>

#include <Brindle/core/Exception.h>
#include <Sealwork/base/FileDescriptor.h>
#include <Sealwork/base/OutputFile.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <span>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace SealTool {

namespace {

constexpr std::size_t largestText = std::size_t{1} << 31U; // bytes, several of the largest regions

[[noreturn]] void refuse(const char* message, const std::string& filename, const Brindle::Location& location) {
    throw Brindle::located(Brindle::Fatal(message), location,
                           {{"filename", filename}, {"reason", std::strerror(errno)}});
}

std::span<const std::uint8_t> toBytes(std::string_view text) {
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

/// A descriptor of its own even for a standard stream, so that it can be closed.
int openForReading(const std::string& filename) {
    return filename == standardStream ? dup(STDIN_FILENO) : open(filename.c_str(), O_RDONLY | O_CLOEXEC);
}

/// Bytes that the file holds, and one for a line feed; not known of a pipe.
std::size_t getSizeHint(const Sealwork::FileDescriptor& file) {
    struct stat status {};
    return fstat(file.get(), &status) == 0 && S_ISREG(status.st_mode) ? static_cast<std::size_t>(status.st_size) + 1
                                                                      : 0;
}

void writeStandardOutput(std::string_view text) {
    Sealwork::FileDescriptor output(dup(STDOUT_FILENO));
    if (!output.isOpen() || !output.write(toBytes(text)) || !output.close())
        refuse("Unable to write file", "standard output", BRINDLE_HERE);
}

} // namespace

std::string readText(const std::string& filename) {
    const Sealwork::FileDescriptor file(openForReading(filename));
    if (!file.isOpen())
        refuse("Unable to read file", filename, BRINDLE_HERE);
    std::string text;
    text.reserve(std::min(getSizeHint(file), largestText));
    std::array<std::uint8_t, 65536> piece{};
    for (;;) {
        const auto size = file.read(piece);
        if (size < 0)
            refuse("Unable to read file", filename, BRINDLE_HERE);
        if (size == 0)
            return text;
        if (text.size() + static_cast<std::size_t>(size) > largestText)
            throw Brindle::located(Brindle::Fatal("Unable to read file"), BRINDLE_HERE,
                                   {{"filename", filename}, {"reason", "larger than 2 GiB"}});
        text.append(reinterpret_cast<const char*>(piece.data()), static_cast<std::size_t>(size));
    }
}

void writeText(const std::string& filename, std::string_view text, bool replace) {
    if (filename == standardStream) {
        writeStandardOutput(text);
        return;
    }
    Sealwork::writeOutputFile(filename, toBytes(text), Sealwork::FileAccess::Public,
                              replace ? Sealwork::Overwrite::Yes : Sealwork::Overwrite::No);
}

void requireWritable(const std::string& filename, bool replace) {
    if (filename == standardStream)
        return;
    Sealwork::requireReplaceable(filename);
    std::error_code error;
    if (!replace && std::filesystem::exists(filename, error))
        throw Brindle::located(Brindle::Fatal("File exists already, --force replaces it"), BRINDLE_HERE,
                               {{"filename", filename}});
}

void makeDirectory(const std::filesystem::path& directory) {
    std::error_code error;
    if (!directory.empty())
        std::filesystem::create_directories(directory, error);
    if (error)
        throw Brindle::located(Brindle::Fatal("Unable to make directory"), BRINDLE_HERE,
                               {{"filename", directory.string()}, {"reason", error.message()}});
}

} // namespace SealTool
