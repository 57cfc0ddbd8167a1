#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

// The entry point of a fuzzer that is built without libFuzzer: runs it once with each file that is named or lies in a
// directory that is named.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

namespace fs = std::filesystem;

/// The files, as absolute paths, because a fuzzer may have a working directory of its own.
std::vector<fs::path> filesOf(const fs::path& path) {
    if (!fs::is_directory(path))
        return {fs::absolute(path)};
    std::vector<fs::path> files;
    for (const fs::directory_entry& entry : fs::directory_iterator(path))
        files.push_back(fs::absolute(entry.path()));
    std::ranges::sort(files);
    return files;
}

bool replay(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    const std::string input((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    std::printf("%s: %zu bytes\n", path.c_str(), input.size());
    std::fflush(stdout); // so that the input of a crash is known
    if (!file)
        return false;
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.data()), input.size());
    return true;
}

} // namespace

int main(int argc, char** argv) {
    std::vector<fs::path> files;
    for (int index = 1; index < argc; ++index)
        std::ranges::move(filesOf(argv[index]), std::back_inserter(files));
    if (files.empty()) {
        std::fprintf(stderr, "usage: %s FILE-OR-DIRECTORY...\n", argv[0]);
        return 2;
    }
    for (const fs::path& file : files) {
        if (!replay(file)) {
            std::fprintf(stderr, "%s: cannot read %s\n", argv[0], file.c_str());
            return 2;
        }
    }
}
