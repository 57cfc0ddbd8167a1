#pragma once

#include <velmora/generation/GeneratedFiles.h>

#include <QString>

#include <string>

namespace Velmora {

class ArgumentDictionary;

/// The generator script of one IP, a Python 2.7 program that defines `generate(argDict)`. Constructing it reads and
/// deciphers its file; each generation runs it once in the embedded interpreter, which is started before and stopped
/// after the run unless the run ends by an exception. The script reports on the console through the module `quarnel`.
///
/// Everything that is thrown by a generation is a Brindle::Fatal (for a value that is no text, Critical). When the
/// script reports an error and still returns a result, the console gets one more error and the result is returned.
class GeneratorScript {
public:
    /// Throws Brindle::Fatal with the field "scriptFilename" when the file cannot be read or holds a NUL once
    /// deciphered, and what Sealwork throws when it was altered.
    explicit GeneratorScript(const std::string& filename);

    /// Runs "text = generate(argDict)" and returns `text` up to its first NUL, one byte a character (Latin-1).
    QString generateText(const ArgumentDictionary& arguments) const;
    /// Runs "fileDict = generate(argDict)" and returns `fileDict`.
    GeneratedFiles generateFiles(const ArgumentDictionary& arguments) const;

private:
    std::string _source;
};

} // namespace Velmora
