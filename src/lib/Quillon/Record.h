#pragma once

#include <string>
#include <utility>

namespace Quillon {

/// How a managed object describes itself in a listing.
class Record {
public:
    explicit Record(std::string header) : _header(std::move(header)) {}

    const std::string& getHeader() const { return _header; }

private:
    std::string _header;
};

} // namespace Quillon
