#pragma once

// Included by the script runner's source alone: Python.h wants to be the first header and its interpreter is the
// runner's.
#include <Python.h>

#include <utility>

namespace Velmora {

/// A reference to a Python object that this value owns and gives back.
class PythonObject {
public:
    /// Takes over a new reference, which may be null.
    static PythonObject owned(PyObject* newReference) { return PythonObject(newReference); }

    PythonObject(PythonObject&& other) noexcept : _object(std::exchange(other._object, nullptr)) {}
    PythonObject(const PythonObject&) = delete;
    PythonObject& operator=(const PythonObject&) = delete;
    ~PythonObject() { Py_XDECREF(_object); }

    PyObject* get() const { return _object; }
    explicit operator bool() const { return _object != nullptr; }

private:
    explicit PythonObject(PyObject* object) : _object(object) {}

    PyObject* _object;
};

} // namespace Velmora
