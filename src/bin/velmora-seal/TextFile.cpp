#include <velmora-seal/TextFile.h>

#include <Brindle/core/Exception.h>
#include <Brindle/files/FileExists.h>
#include <Brindle/files/InputFile.h>
#include <Brindle/files/OutputFiles.h>

#include <system_error>

namespace SealTool {

namespace {

constexpr std::size_t largestText = (std::size_t{1} << 31U) - 1; // bytes, several of the largest regions

Brindle::Overwrite toOverwrite(bool replace) {
    return replace ? Brindle::Overwrite::Yes : Brindle::Overwrite::No;
}

} // namespace

std::string readText(const std::string& filename) {
    return Brindle::readInputFile(filename, largestText);
}

void writeText(const std::string& filename, std::string text, bool replace) {
    Brindle::OutputFiles output(BRINDLE_HERE);
    output.add(filename, std::move(text), toOverwrite(replace));
    output.commit();
}

void requireWritable(const std::string& filename, bool replace) {
    try {
        Brindle::OutputFiles(BRINDLE_HERE).requireWritable(filename, toOverwrite(replace));
    } catch (const Brindle::FileExists& exception) {
        throw Brindle::reworded<Brindle::Fatal>(exception.getMessage() + ", --force replaces it", exception);
    }
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
