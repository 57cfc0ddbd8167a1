#pragma once

#include <QString>

#include <ostream>
#include <sstream>

/// What reaches a standard stream as long as the object lives, instead of the test's own output.
class Captured {
public:
    explicit Captured(std::ostream& stream) : _stream(stream), _buffer(stream.rdbuf(_text.rdbuf())) {}
    Captured(const Captured&) = delete;
    Captured& operator=(const Captured&) = delete;
    ~Captured() { _stream.rdbuf(_buffer); }

    /// What has come since the last call.
    QString take() {
        const auto text = QString::fromStdString(_text.str());
        _text.str({});
        return text;
    }

private:
    std::ostream& _stream;
    std::ostringstream _text;
    std::streambuf* _buffer;
};
