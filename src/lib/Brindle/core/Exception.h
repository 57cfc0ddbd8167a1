#pragma once

#include <Brindle/core/Location.h>

#include <concepts>
#include <exception>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

namespace Brindle {

/// Root of everything that the in-house libraries and the program throw: a message, the place in the source where it
/// was thrown and named fields that say what it was about.
class Exception : public std::exception {
public:
    using Field = std::pair<std::string, std::string>; ///< Name and value.
    using Fields = std::vector<Field>;                 ///< In the order in which they were added.

    explicit Exception(std::string message);

    const char* what() const noexcept override { return _message.c_str(); }
    const std::string& getMessage() const noexcept { return _message; }
    const Location& getLocation() const noexcept { return _location; }
    const Fields& getFields() const noexcept { return _fields; }

    /// The value of the named field; empty when there is none.
    std::string getField(std::string_view name) const;

    /// Stamps the place in the source; the texts must outlive the exception, as literals do.
    void locate(std::string_view file, std::string_view function, int line) { _location = {file, function, line}; }
    void locate(const Location& location) { _location = location; }
    void addField(std::string name, std::string value);

private:
    std::string _message;
    Location _location;
    Fields _fields;
};

/// A failure of an operation.
class Error : public Exception {
public:
    using Exception::Exception;
};

/// Stops the current operation.
class Critical : public Error {
public:
    using Error::Error;
};

/// A generation cannot go on.
class Fatal : public Error {
public:
    using Error::Error;
};

/// A state that the program's own code should have made impossible.
class InternalError : public Fatal {
public:
    using Fatal::Fatal;
};

/// An operation was asked for with a bad argument.
class InvalidRequest : public Error {
public:
    using Error::Error;
};

/// A managed object could not be created.
class FactoryFailed : public Error {
public:
    using Error::Error;
};

/// The user interrupted the operation.
class Interruption : public Exception {
public:
    using Exception::Exception;
};

/// The same exception, of the same type, with the fields given. It has no place: `locatedAt` gives it one.
template <std::derived_from<Exception> E>
E withFields(E exception, std::initializer_list<Exception::Field> fields) {
    for (const auto& [name, value] : fields)
        exception.addField(name, value);
    return exception;
}

/// The same exception, of the same type, with the place and the fields given: `throw located(Fatal("..."),
/// BRINDLE_HERE)`.
template <std::derived_from<Exception> E>
E located(E exception, const Location& location, std::initializer_list<Exception::Field> fields = {}) {
    exception.locate(location);
    return withFields(std::move(exception), fields);
}

/// What the work returns. An exception of this family that leaves it without a place is at this one from here on:
/// shared code need not know whom it works for.
template <class Work>
decltype(auto) locatedAt(const Location& location, Work&& work) {
    try {
        return std::forward<Work>(work)();
    } catch (Exception& exception) {
        if (exception.getLocation().line == 0)
            exception.locate(location);
        throw; // the same object, so that it keeps its type
    }
}

/// A new exception of type E with another message that keeps the place and the fields of the one that it stands for.
template <std::derived_from<Exception> E>
E reworded(std::string message, const Exception& original) {
    E exception(std::move(message));
    exception.locate(original.getLocation());
    for (const auto& [name, value] : original.getFields())
        exception.addField(name, value);
    return exception;
}

} // namespace Brindle
