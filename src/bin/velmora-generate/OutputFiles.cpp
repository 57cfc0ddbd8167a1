#include <velmora-generate/OutputFiles.h>

#include <Brindle/core/Exception.h>

#include <QFileInfo>

namespace GenerateTool {

void OutputFiles::add(const QString& path, const std::string& content) {
    const QFileInfo present(path);
    if (present.exists() && !present.isFile() && !present.isDir()) {
        _devices.emplace_back(std::make_unique<QFile>(path), content);
        return;
    }
    auto file = std::make_unique<QSaveFile>(path);
    if (!file->open(QIODevice::WriteOnly))
        refuse("Unable to open file ", *file);
    write(*file, content);
    _files.push_back(std::move(file));
}

void OutputFiles::commit() {
    for (const auto& file : _files) {
        if (!file->commit())
            refuse("Unable to write file ", *file);
    }
    for (const auto& [device, content] : _devices) {
        if (!device->open(QIODevice::WriteOnly))
            refuse("Unable to open file ", *device);
        write(*device, content);
    }
}

void OutputFiles::write(QFileDevice& file, const std::string& content) const {
    const auto size = static_cast<qint64>(content.size());
    if (file.write(content.data(), size) != size || !file.flush())
        refuse("Unable to write file ", file);
}

void OutputFiles::refuse(const char* message, const QFileDevice& file) const {
    throw Brindle::withFields(Brindle::Fatal(message + file.fileName().toStdString()),
                              {{"reason", file.errorString().toStdString()}});
}

} // namespace GenerateTool
