#include <Brindle/files/OutputFiles.h>

#include <Brindle/core/Exception.h>
#include <Brindle/files/FileExists.h>
#include <Brindle/files/OutputPlace.h>
#include <Brindle/files/SystemError.h>

#include <cerrno>
#include <system_error>

#include <fcntl.h>

namespace Brindle {

namespace fs = std::filesystem;

namespace {

std::span<const std::uint8_t> toBytes(std::string_view text) {
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

[[noreturn]] void fail(std::errc reason) {
    throw std::system_error(std::make_error_code(reason));
}

/// Where it ends, which may be written.
OutputPlace findPlace(const fs::path& path, Overwrite overwrite) {
    auto place = OutputPlace::find(path);
    if (place.descriptor || place.isDevice)
        return place;
    if (fs::is_directory(place.path))
        fail(std::errc::is_a_directory);
    if (overwrite == Overwrite::No && fs::exists(fs::symlink_status(path)))
        fail(std::errc::file_exists);
    return place;
}

} // namespace

/// Turns what the system says into what this class throws.
template <typename Work>
void OutputFiles::reporting(const fs::path& path, Work work) const {
    try {
        work();
    } catch (const std::system_error& error) {
        if (error.code() == std::errc::file_exists)
            throw located(FileExists("File exists already"), _caller, {{"filename", path.string()}});
        throw located(Fatal("Unable to write file"), _caller,
                      {{"filename", path.string()}, {"reason", error.code().message()}});
    }
}

void OutputFiles::requireWritable(const fs::path& path, Overwrite overwrite) const {
    reporting(path, [&] { findPlace(path, overwrite); });
}

void OutputFiles::add(const fs::path& path, std::string content, Overwrite overwrite) {
    reporting(path, [&] {
        const auto place = findPlace(path, overwrite);
        if (!place.descriptor && !place.isDevice) {
            stage(path, place.path, FileAccess::Public, overwrite, toBytes(content));
            return;
        }
        if (place.descriptor) {
            addTo(*place.descriptor, path, std::move(content));
            return;
        }
        const int descriptor = open(place.path.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY);
        requireSuccess(descriptor >= 0);
        _streams.push_back({path, FileDescriptor(descriptor), std::move(content)});
    });
}

void OutputFiles::addTo(int descriptor, const fs::path& name, std::string content) {
    reporting(name, [&] {
        const int own = fcntl(descriptor, F_DUPFD_CLOEXEC, 0);
        requireSuccess(own >= 0);
        _streams.push_back({name, FileDescriptor(own), std::move(content)});
    });
}

void OutputFiles::addPrivate(const fs::path& path, std::span<const std::uint8_t> content, Overwrite overwrite) {
    reporting(path, [&] {
        const auto status = fs::symlink_status(path);
        if (fs::exists(status) && !fs::is_regular_file(status) && !fs::is_symlink(status))
            throw located(Fatal("Unable to write file"), _caller,
                          {{"filename", path.string()}, {"reason", "not a regular file"}});
        stage(path, path, FileAccess::Private, overwrite, content);
    });
}

void OutputFiles::stage(const fs::path& path, const fs::path& target, FileAccess access, Overwrite overwrite,
                        std::span<const std::uint8_t> content) {
    constexpr std::size_t mostUnnamed = 64;
    _names.push_back(path);
    _files.emplace_back(target, access, overwrite, _files.size() < mostUnnamed).write(content);
}

void OutputFiles::commit() {
    for (auto& stream : _streams) {
        reporting(stream.name, [&] {
            requireSuccess(stream.descriptor.write(toBytes(stream.content)) && stream.descriptor.close());
        });
    }
    const SignalDelay delay;
    try {
        auto name = _names.begin();
        for (auto& file : _files)
            reporting(*name++, [&] { file.publish(&file != &_files.back()); });
    } catch (...) {
        for (auto& file : _files)
            file.putBack();
        _files.clear();
        throw;
    }
    _files.clear(); // While signals wait: what was replaced still has a hidden name.
}

} // namespace Brindle
