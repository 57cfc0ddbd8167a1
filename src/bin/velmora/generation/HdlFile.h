#pragma once

#include <Brindle/core/Location.h>

#include <QFile>
#include <QString>

#include <string>
#include <string_view>

namespace Velmora {

/// A file that takes generated HDL. Constructing it opens the file, which empties it. Everything that is thrown is
/// located at `caller`.
class HdlFile {
public:
    /// Throws Brindle::Fatal "Unable to open file " and the path.
    HdlFile(const QString& path, const Brindle::Location& caller);

    /// What a file of that path holds for the text. Throws what `write` throws before it writes.
    static std::string getContent(const QString& text, const QString& path, const Brindle::Location& caller);

    /// Writes the text, which holds its bytes one a character, with its protected regions enciphered. Throws
    /// Brindle::Fatal when the markers are out of order or not everything could be written, and what Sealwork throws;
    /// the file is then empty.
    void write(const QString& text);

private:
    void writeBytes(std::string_view bytes);

    QFile _file;
    Brindle::Location _caller;
};

} // namespace Velmora
