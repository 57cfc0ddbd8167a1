#pragma once

#include <Brindle/collections/Collections.h>

#include <list>
#include <string>
#include <utility>

/// An element with associates of every kind: by reference, by value and as a collection.
class Part {
public:
    Part() = default;
    Part(std::string name, std::list<std::string> tags) : _name(std::move(name)), _tags(std::move(tags)) {}

    const std::string& getName() const { return _name; }
    std::string getKind() const { return _name.substr(0, 1); }
    Brindle::strings getTags() const { return Brindle::ListCollection(_tags); }
    bool isOfKind(const std::string& kind) const { return getKind() == kind; }
    bool hasTags(unsigned long count) const noexcept { return _tags.size() == count; }

private:
    std::string _name = "unnamed";
    std::list<std::string> _tags;
};

using PartPointers = std::list<Part*>;
