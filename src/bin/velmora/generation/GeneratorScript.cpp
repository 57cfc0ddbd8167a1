#include <velmora/generation/PythonObject.h>

#include <velmora/generation/GeneratorScript.h>

#include <velmora/generation/PythonHome.h>
#include <velmora/rules/ArgumentDictionary.h>
#include <velmora/rules/Common.h>

#include <Brindle/core/Console.h>
#include <Brindle/core/Exception.h>
#include <Brindle/widgets/RegularFile.h>

#include <array>
#include <clocale>
#include <string_view>
#include <tuple>

namespace Velmora {

namespace {

using Report = void (*)(const std::string& text);

/// Hands the one argument of a Python call, a `str` or a `unicode` (as UTF-8), to the console.
PyObject* report(PyObject* arguments, Report show) {
    PyObject* argument = nullptr;
    if (!PyArg_ParseTuple(arguments, "O", &argument))
        return nullptr;
    const PythonObject encoded =
        PythonObject::owned(PyUnicode_Check(argument) ? PyUnicode_AsUTF8String(argument) : PyObject_Str(argument));
    char* bytes = nullptr;
    Py_ssize_t size = 0;
    if (!encoded || PyString_AsStringAndSize(encoded.get(), &bytes, &size) != 0)
        return nullptr;
    try {
        show(std::string(bytes, static_cast<std::size_t>(size)));
    } catch (const std::exception& failure) { // must not cross the interpreter's frames
        PyErr_SetString(PyExc_RuntimeError, failure.what());
        return nullptr;
    } catch (...) {
        PyErr_SetString(PyExc_RuntimeError, "the console failed");
        return nullptr;
    }
    Py_RETURN_NONE;
}

PyObject* printError(PyObject*, PyObject* arguments) {
    return report(arguments, [](const std::string& text) { Brindle::console.error(text); });
}

PyObject* printText(PyObject*, PyObject* arguments) {
    return report(arguments, [](const std::string& text) { Brindle::console.print(text); });
}

std::array consoleFunctions{
    PyMethodDef{"printError", printError, METH_VARARGS, "Shows a text as an error on the program's console."},
    PyMethodDef{"printText", printText, METH_VARARGS, "Shows a text on the program's console."},
    PyMethodDef{nullptr, nullptr, 0, nullptr}};

void initializeConsoleModule() {
    Py_InitModule3("quarnel", consoleFunctions.data(), "The program's console.");
}

/// The interpreter, cut off from the user's own Python: no environment variables, no user or site packages, no signal
/// handlers, nothing written beside the library, and `sys.exit` is an exception like any other.
void startInterpreter() {
    static std::string home = getPythonHome(); // which the interpreter keeps a pointer to
    static const bool registered = PyImport_AppendInittab("quarnel", initializeConsoleModule) == 0;
    if (!registered)
        throw std::bad_alloc();
    Py_SetPythonHome(home.data());
    Py_IgnoreEnvironmentFlag = 1;
    Py_NoUserSiteDirectory = 1;
    Py_NoSiteFlag = 1;
    Py_DontWriteBytecodeFlag = 1;
    Py_InspectFlag = 1;
    Py_InitializeEx(0);
}

/// While it lives, the C library has its standard locale, as a Python of its own would: otherwise `upper` and `lower`
/// would follow the user's language, and a script could change the language of the program.
class StandardLocale {
public:
    StandardLocale() : _earlier(std::setlocale(LC_ALL, nullptr)) { std::setlocale(LC_ALL, "C"); }
    ~StandardLocale() { std::setlocale(LC_ALL, _earlier.c_str()); }
    StandardLocale(const StandardLocale&) = delete;
    StandardLocale& operator=(const StandardLocale&) = delete;

private:
    const std::string _earlier;
};

/// A run of the interpreter. It is stopped by `finish` only: after a run that ends by an exception it deliberately
/// stays up, and the next run goes on in it.
class Interpreter {
public:
    Interpreter() {
        startInterpreter();
        _variables = PyModule_GetDict(PyImport_AddModule("__main__"));
        forgetEarlierRun();
    }

    /// A failing statement has its trace reported by the exception hook of the prelude.
    void run(const char* statements) { PyRun_SimpleString(statements); }

    /// The object of that name in the module "__main__", borrowed; null when there is none.
    PyObject* find(const char* name) const {
        const PythonObject key = PythonObject::owned(PyString_FromString(name));
        return PyDict_Contains(_variables, key.get()) == 1 ? PyDict_GetItemString(_variables, name) : nullptr;
    }

    void finish() { Py_Finalize(); }

private:
    /// What a failed run left behind must not be taken for a result of this one.
    void forgetEarlierRun() {
        for (const char* name : {"text", "fileDict", "generate", "argDict"}) {
            if (find(name))
                PyDict_DelItemString(_variables, name);
        }
    }

    const StandardLocale _locale;
    PyObject* _variables = nullptr; // borrowed from the module, which lives as long as the interpreter
};

constexpr std::array prelude{"__name__ = ''", "from quarnel import *", "import sys\nimport traceback",
                             "def PluginException(type, value, trace):\n"
                             "  first = True\n"
                             "  for e in traceback.format_exception(type, value, trace):\n"
                             "    if (first):\n"
                             "      printError(e.replace('\\n', '').strip(' '))\n"
                             "      first = False\n"
                             "    else:\n"
                             "      printText('  ' + e.replace('\\n', '').strip(' '))\n",
                             "sys.excepthook = PluginException"};

/// The bytes of a Python string.
std::string_view getBytes(PyObject* object) {
    char* bytes = nullptr;
    Py_ssize_t size = 0;
    if (!PyString_Check(object) || PyString_AsStringAndSize(object, &bytes, &size) != 0)
        throw Brindle::Critical("Can't convert object in 'String'");
    return {bytes, static_cast<std::size_t>(size)};
}

QString toLatin1Text(std::string_view bytes) {
    return QString::fromLatin1(bytes.data(), static_cast<int>(bytes.size()));
}

QString toText(PyObject* text) {
    if (!PyString_CheckExact(text))
        throw Brindle::Fatal("'text' is not a string");
    const std::string_view bytes = getBytes(text);
    return toLatin1Text(bytes.substr(0, bytes.find('\0')));
}

GeneratedFiles toFiles(PyObject* fileDict) {
    if (!PyDict_CheckExact(fileDict))
        throw Brindle::Fatal("'fileDict' is not a dictionnary");
    GeneratedFiles files;
    PyObject* key = nullptr;
    PyObject* value = nullptr;
    for (Py_ssize_t position = 0; PyDict_Next(fileDict, &position, &key, &value);) {
        if (!PyString_CheckExact(key) || !PyString_CheckExact(value))
            throw Brindle::Fatal("Not a string");
        const std::string_view name = getBytes(key);
        files[QString::fromUtf8(name.data(), static_cast<int>(name.size()))] = toLatin1Text(getBytes(value));
    }
    return files;
}

/// Runs the script with the arguments, then the call; the result is what `convert` makes of the variable `resultName`.
template <class Convert>
auto generate(const std::string& source, const ArgumentDictionary& arguments, const char* call, const char* resultName,
              Convert convert) {
    const std::string argumentStatement = arguments.getStatement();
    Interpreter interpreter;
    const unsigned long errorCount = Brindle::console.getErrorCount();
    for (const char* statements : prelude)
        interpreter.run(statements);
    interpreter.run(source.c_str());
    interpreter.run(argumentStatement.c_str());
    interpreter.run(call);

    PyObject* object = interpreter.find(resultName);
    if (!object)
        throw Brindle::Fatal("Should not be here");
    auto result = convert(object);
    interpreter.finish();
    if (Brindle::console.getErrorCount() != errorCount)
        Brindle::console.error("Failed to generate the IP, please contact the provider.");
    return result;
}

} // namespace

GeneratorScript::GeneratorScript(const std::string& filename) {
    constexpr std::size_t longest = 128UL * 1024 * 1024; // bytes; a sealed script is refused long before
    const auto file = Brindle::RegularFile::read(filename, longest);
    if (!file.isRead())
        throw Brindle::withFields(Brindle::Fatal("Unable to open script file"), {{"scriptFilename", filename}});
    _source = getDecrypted(file.text);
    if (_source.find('\0') != _source.npos)
        throw Brindle::withFields(Brindle::Fatal("Script holds a NUL byte"), {{"scriptFilename", filename}});
}

QString GeneratorScript::generateText(const ArgumentDictionary& arguments) const {
    return generate(_source, arguments, "text = generate(argDict)", "text", toText);
}

GeneratedFiles GeneratorScript::generateFiles(const ArgumentDictionary& arguments) const {
    return generate(_source, arguments, "fileDict = generate(argDict)", "fileDict", toFiles);
}

} // namespace Velmora
