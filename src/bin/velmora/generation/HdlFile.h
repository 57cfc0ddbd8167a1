#pragma once

#include <QFile>
#include <QString>

#include <string>
#include <string_view>

namespace Velmora {

/// A file that takes generated HDL. Constructing it opens the file, which empties it.
class HdlFile {
public:
    /// Throws Brindle::Fatal "Unable to open file " and the path.
    explicit HdlFile(const QString& path);

    /// What a file of that path holds for the text. Throws what `write` throws before it writes.
    static std::string getContent(const QString& text, const QString& path);

    /// Writes the text, which holds its bytes one a character, with its protected regions enciphered. Throws
    /// Brindle::Fatal when the markers are out of order, not everything could be written or the path has come to name
    /// no or another file, and what Sealwork throws; the file is then empty.
    void write(const QString& text);

private:
    void writeBytes(std::string_view bytes);
    void requirePlace() const;
    [[noreturn]] void refuse(const std::string& reason) const;

    QFile _file;
};

} // namespace Velmora
