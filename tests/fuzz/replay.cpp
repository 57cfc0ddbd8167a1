#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

// The entry point of a fuzzer that is built without libFuzzer: runs it once with the file that is named, or with each
// file of the directory.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

namespace fs = std::filesystem;

/// The files of the directory, so that each run takes them in the same order.
std::vector<fs::path> filesOf(const fs::path& directory) {
    std::vector<fs::path> files;
    for (const fs::directory_entry& entry : fs::directory_iterator(directory))
        files.push_back(entry.path());
    std::ranges::sort(files);
    return files;
}

void replay(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    const std::string input((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    std::printf("%s: %zu bytes\n", path.c_str(), input.size());
    std::fflush(stdout); // so that the input of a crash is known
    if (!file)
        std::exit(2);
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.data()), input.size());
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s FILE-OR-DIRECTORY\n", argv[0]);
        return 2;
    }
    for (const fs::path& file : fs::is_directory(argv[1]) ? filesOf(argv[1]) : std::vector<fs::path>{argv[1]})
        replay(file);
}
