#pragma once

#include <QFile>
#include <QSaveFile>
#include <QString>

#include <memory>
#include <string>
#include <vector>

namespace GenerateTool {

/// Files that replace those of the same names together, once all of them are written.
class OutputFiles {
public:
    /// Writes the content beside the file, or keeps it when the path is that of a device or pipe. Throws Brindle::Fatal
    /// "Unable to open file " or "Unable to write file " and the path; nothing is replaced then.
    void add(const QString& path, const std::string& content);
    /// Gives all files their names. Throws Brindle::Fatal "Unable to write file " and the path.
    void commit();

private:
    void write(QFileDevice& file, const std::string& content) const;
    [[noreturn]] void refuse(const char* message, const QFileDevice& file) const;

    std::vector<std::unique_ptr<QSaveFile>> _files;
    std::vector<std::pair<std::unique_ptr<QFile>, std::string>> _devices;
};

} // namespace GenerateTool
