#include <velmora/generation/PythonObject.h>

#include <velmora/generation/GeneratorScript.h>

#include <velmora/generation/PythonHome.h>
#include <velmora/rules/ArgumentDictionary.h>
#include <velmora/rules/Common.h>

#include <Brindle/core/Console.h>
#include <Brindle/core/Exception.h>
#include <Brindle/files/FileDescriptor.h>
#include <Brindle/files/RegularFile.h>

#include <algorithm>
#include <array>
#include <clocale>
#include <cmath>
#include <string_view>
#include <tuple>

#include <fcntl.h>
#include <frameobject.h>
#include <unistd.h>

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

constexpr std::string_view hookName = "PluginException";

/// True in a call that the exception hook of the prelude makes.
bool isCalledByHook() {
    const PyFrameObject* frame = PyEval_GetFrame();
    return frame && PyString_AsString(frame->f_code->co_name) == hookName;
}

/// What the hook prints is the reason of the error that it showed before; anything else the user should know.
PyObject* printText(PyObject*, PyObject* arguments) {
    if (isCalledByHook())
        return report(arguments, [](const std::string& text) { Brindle::console.continueError(text); });
    return report(arguments, [](const std::string& text) { Brindle::console.remark(text); });
}

std::array consoleFunctions{
    PyMethodDef{"printError", printError, METH_VARARGS, "Shows a text as an error on the program's console."},
    PyMethodDef{"printText", printText, METH_VARARGS, "Shows a text as a remark on the program's console."},
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

/// While it lives, a script may change the working directory.
class WorkingDirectory {
public:
    WorkingDirectory() : _earlier(open(".", O_PATH | O_DIRECTORY | O_CLOEXEC)) {}
    ~WorkingDirectory() {
        if (_earlier.isOpen() && fchdir(_earlier.get()) != 0)
            Brindle::console.remark("The working directory is that of the script, the earlier one is gone");
    }
    WorkingDirectory(const WorkingDirectory&) = delete;
    WorkingDirectory& operator=(const WorkingDirectory&) = delete;

private:
    const Brindle::FileDescriptor _earlier;
};

/// A run of the interpreter. It is stopped by `finish` only: after a run that ends by an exception it deliberately
/// stays up, and the next run goes on in it.
class Interpreter {
public:
    Interpreter() {
        const bool isFresh = Py_IsInitialized() == 0;
        startInterpreter();
        if (isFresh)
            keepBuiltins();
        else
            restoreBuiltins();
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

    /// What the function of that name in the module "__main__" returns for `argDict`; null when it raises, of which the
    /// exception hook tells.
    PythonObject call(const char* function) const {
        PythonObject result =
            PythonObject::owned(PyObject_CallFunctionObjArgs(find(function), find("argDict"), nullptr));
        if (!result)
            PyErr_Print();
        return result;
    }

    void finish() {
        Py_CLEAR(_builtins);
        Py_Finalize();
    }

private:
    static PyObject* getBuiltins() { return PyModule_GetDict(PyImport_AddModule("__builtin__")); }

    static void keepBuiltins() { _builtins = PyDict_Copy(getBuiltins()); }

    /// Names that a failed run gave to all modules would be found by this one.
    static void restoreBuiltins() {
        const PythonObject left = PythonObject::owned(PyDict_Copy(getBuiltins())); // whose destructors need the names
        PyDict_Clear(getBuiltins());
        PyDict_Update(getBuiltins(), _builtins);
    }

    /// What a failed run left behind must not be taken for a result of this one.
    void forgetEarlierRun() {
        for (const char* name : {"text", "fileDict", "generate", "describe", "testBench", "check", "argDict"}) {
            if (find(name))
                PyDict_DelItemString(_variables, name);
        }
    }

    static inline PyObject* _builtins = nullptr; // as they were at the start
    const StandardLocale _locale;
    const WorkingDirectory _workingDirectory;
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

void load(Interpreter& interpreter, const std::string& source, const std::string& argumentStatement) {
    for (const char* statements : prelude)
        interpreter.run(statements);
    interpreter.run(source.c_str());
    interpreter.run(argumentStatement.c_str());
}

/// Runs the script with the arguments, then the call; the result is what `convert` makes of the variable `resultName`.
template <class Convert>
auto generate(const std::string& source, const ArgumentDictionary& arguments, const char* call, const char* resultName,
              Convert convert) {
    const std::string argumentStatement = arguments.getStatement();
    Interpreter interpreter;
    const unsigned long errorCount = Brindle::console.getErrorCount();
    load(interpreter, source, argumentStatement);
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

/// Texts of scripts are UTF-8.
QString toUtf8Text(PyObject* object) {
    const std::string_view bytes = getBytes(object);
    return QString::fromUtf8(bytes.data(), static_cast<int>(bytes.size()));
}

/// The elements of a list; null when it is none.
std::optional<std::vector<PyObject*>> toElements(PyObject* list) {
    if (!PyList_CheckExact(list))
        return std::nullopt;
    std::vector<PyObject*> elements;
    elements.reserve(static_cast<std::size_t>(PyList_GET_SIZE(list)));
    for (Py_ssize_t index = 0; index < PyList_GET_SIZE(list); ++index)
        elements.push_back(PyList_GET_ITEM(list, index));
    return elements;
}

bool isTuple(PyObject* object, Py_ssize_t size) {
    return PyTuple_CheckExact(object) && PyTuple_GET_SIZE(object) == size;
}

std::optional<FactValue> toFactValue(PyObject* object) {
    if (PyString_CheckExact(object))
        return toUtf8Text(object);
    if (PyFloat_CheckExact(object) && std::isfinite(PyFloat_AS_DOUBLE(object)))
        return PyFloat_AS_DOUBLE(object);
    if (!PyInt_CheckExact(object) && !PyLong_CheckExact(object))
        return std::nullopt;
    int overflow = 0;
    const long long number = PyLong_AsLongLongAndOverflow(object, &overflow);
    return overflow ? std::nullopt : std::optional<FactValue>(number);
}

std::optional<std::vector<Fact>> toFacts(PyObject* object) {
    const auto elements = toElements(object);
    if (!elements)
        return std::nullopt;
    std::vector<Fact> facts;
    for (PyObject* element : *elements) {
        if (!isTuple(element, 3) || !PyString_CheckExact(PyTuple_GET_ITEM(element, 0)) ||
            !PyString_CheckExact(PyTuple_GET_ITEM(element, 2)))
            return std::nullopt;
        const auto value = toFactValue(PyTuple_GET_ITEM(element, 1));
        if (!value)
            return std::nullopt;
        facts.push_back({toUtf8Text(PyTuple_GET_ITEM(element, 0)), *value, toUtf8Text(PyTuple_GET_ITEM(element, 2))});
    }
    return facts;
}

std::optional<std::vector<FailedCheck>> toFailedChecks(PyObject* object) {
    const auto elements = toElements(object);
    if (!elements)
        return std::nullopt;
    std::vector<FailedCheck> failures;
    for (PyObject* element : *elements) {
        if (!isTuple(element, 2) || !PyString_CheckExact(PyTuple_GET_ITEM(element, 0)))
            return std::nullopt;
        const auto keys = toElements(PyTuple_GET_ITEM(element, 1));
        if (!keys || !std::ranges::all_of(*keys, [](PyObject* key) { return PyString_CheckExact(key); }))
            return std::nullopt;
        FailedCheck failure{toUtf8Text(PyTuple_GET_ITEM(element, 0)), {}};
        for (PyObject* key : *keys)
            failure.keys += toUtf8Text(key);
        failures.push_back(failure);
    }
    return failures;
}

std::optional<QString> toBench(PyObject* object) {
    return PyString_CheckExact(object) ? std::optional(toText(object)) : std::nullopt;
}

/// What `convert` makes of the result of a function that a script need not define; nothing when it does not. `convert`
/// gives nothing for a result that is not what the function should return.
template <class Convert>
auto callOptional(const std::string& source, const ArgumentDictionary& arguments, const std::string& function,
                  const std::string& wanted, Convert convert) -> decltype(convert(nullptr)) {
    const std::string argumentStatement = arguments.getStatement();
    const std::string quoted = "'" + function + "'";
    Interpreter interpreter;
    const unsigned long errorCount = Brindle::console.getErrorCount();
    load(interpreter, source, argumentStatement);
    if (Brindle::console.getErrorCount() != errorCount)
        throw Brindle::Fatal("The script failed before " + quoted + " was called");
    decltype(convert(nullptr)) result;
    if (interpreter.find(function.c_str())) {
        const PythonObject returned = interpreter.call(function.c_str());
        if (!returned)
            throw Brindle::Fatal(quoted + " ended by an exception");
        result = convert(returned.get());
        if (!result)
            throw Brindle::Fatal(quoted + " should return " + wanted);
    }
    interpreter.finish();
    return result;
}

} // namespace

GeneratorScript::GeneratorScript(const std::string& filename) {
    constexpr std::size_t longest = 128UL * 1024 * 1024; // bytes; a sealed script is refused long before
    const auto file = Brindle::RegularFile::read(filename, longest);
    if (!file.isRead())
        throw Brindle::withFields(Brindle::Fatal("Unable to open script file"), {{"scriptFilename", filename}});
    try {
        _source = getDecrypted(file.text);
        requireNoNul();
    } catch (Brindle::Exception& exception) {
        exception.addField("scriptFilename", filename);
        throw;
    }
}

GeneratorScript GeneratorScript::fromPlain(const std::string& source) {
    GeneratorScript script;
    script._source = source;
    script.requireNoNul();
    return script;
}

void GeneratorScript::requireNoNul() const {
    if (_source.find('\0') != _source.npos)
        throw Brindle::Fatal("Script holds a NUL byte");
}

void GeneratorScript::requireGenerate() const {
    Interpreter interpreter;
    const unsigned long errorCount = Brindle::console.getErrorCount();
    load(interpreter, _source, ArgumentDictionary().getStatement());
    if (Brindle::console.getErrorCount() != errorCount)
        throw Brindle::Fatal("The script failed");
    if (!interpreter.find("generate"))
        throw Brindle::Fatal("The script defines no 'generate'");
    interpreter.finish();
}

QString GeneratorScript::generateText(const ArgumentDictionary& arguments) const {
    return generate(_source, arguments, "text = generate(argDict)", "text", toText);
}

GeneratedFiles GeneratorScript::generateFiles(const ArgumentDictionary& arguments) const {
    return generate(_source, arguments, "fileDict = generate(argDict)", "fileDict", toFiles);
}

std::optional<std::vector<Fact>> GeneratorScript::describe(const ArgumentDictionary& arguments) const {
    return callOptional(_source, arguments, "describe",
                        "a list of (label, value, unit), label and unit as str, the value as int, float or str",
                        toFacts);
}

std::optional<QString> GeneratorScript::makeTestBench(const ArgumentDictionary& arguments) const {
    return callOptional(_source, arguments, "testBench", "a str", toBench);
}

std::optional<std::vector<FailedCheck>> GeneratorScript::check(const ArgumentDictionary& arguments) const {
    return callOptional(_source, arguments, "check", "a list of (message, [keys]), each of them as str",
                        toFailedChecks);
}

} // namespace Velmora
