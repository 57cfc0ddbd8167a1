#pragma once

#include <velmora/generation/GeneratedFiles.h>
#include <velmora/generation/ScriptAnswers.h>

#include <QString>

#include <optional>
#include <string>
#include <vector>

namespace Velmora {

class ArgumentDictionary;

/// The generator script of one IP, a Python 2.7 program that defines `generate(argDict)` and, where it likes,
/// `describe(argDict)`, `testBench(argDict)` and `check(argDict)`. Constructing it reads and deciphers its file; each
/// call runs it once in the embedded interpreter, which is started before and stopped after the run unless the run ends
/// by an exception. The script reports on the console through the module `quarnel`: errors,
/// remarks, and why it failed. The working directory stays, whatever the script does.
///
/// Everything that is thrown by a call is a Brindle::Fatal (for a value that is no text, Critical). When the
/// script reports an error and still returns a result, the console gets one more error and the result is returned.
class GeneratorScript {
public:
    /// Throws Brindle::Fatal with the field "scriptFilename" when the file cannot be read or holds a NUL once
    /// deciphered, and what Sealwork throws, with that field too, when it was altered.
    explicit GeneratorScript(const std::string& filename);
    /// A script that nobody has sealed, of an author who tries it. Throws Brindle::Fatal when it holds a NUL.
    static GeneratorScript fromPlain(const std::string& source);

    /// Runs the script alone. Throws Brindle::Fatal when it fails or defines no `generate`.
    void requireGenerate() const;

    /// Runs "text = generate(argDict)" and returns `text` up to its first NUL, one byte a character (Latin-1).
    QString generateText(const ArgumentDictionary& arguments) const;
    /// Runs "fileDict = generate(argDict)" and returns `fileDict`.
    GeneratedFiles generateFiles(const ArgumentDictionary& arguments) const;

    /// The facts of the design that `generate` makes of the arguments; nothing when the script tells none. This and the
    /// others throw Brindle::Fatal, which names the function, when it raises or returns something else.
    std::optional<std::vector<Fact>> describe(const ArgumentDictionary& arguments) const;
    /// A self-checking test bench for that design, one byte a character (Latin-1); nothing when the script has none.
    std::optional<QString> makeTestBench(const ArgumentDictionary& arguments) const;
    /// What is wrong with the form that the arguments are from; nothing when the script checks nothing.
    std::optional<std::vector<FailedCheck>> check(const ArgumentDictionary& arguments) const;

private:
    GeneratorScript() = default;
    void requireNoNul() const;

    std::string _source;
};

} // namespace Velmora
