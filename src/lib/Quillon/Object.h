#pragma once

#include <Quillon/Record.h>

#include <memory>
#include <string>

namespace Quillon {

/// Base of the managed objects: `preCreate` may refuse before anything is built, `postCreate` completes the object once
/// it is built, `preDestroy` runs before it is deleted. Made by `create` (see Owned.h). A derived class calls its
/// base's `preCreate` and `preDestroy` first and its base's `postCreate` last.
class Object {
public:
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;
    virtual ~Object() = default;

    /// Runs before construction, with the arguments of the creation; throws to refuse.
    static void preCreate() {}
    /// Runs after construction, with the arguments of the creation; from here on the object is reportable.
    void postCreate() { _isReportable = true; }
    /// Runs before deletion, also of an object whose `postCreate` threw; must not throw.
    virtual void preDestroy() { _isReportable = false; }

    /// True from the end of the creation to the beginning of the destruction.
    bool isReportable() const { return _isReportable; }

    /// The name of the object's kind.
    virtual std::string getAlias() const { return "Object"; }
    /// The kinds that the object belongs to, from the base on: "Object/IPHandler".
    std::string getLabel() const { return _getLabel(); }
    /// The object's entry in a listing; null while it is not reportable.
    std::unique_ptr<Record> getRecord() const { return _getRecord(); }

protected:
    Object() = default;

    virtual std::string _getLabel() const { return "Object"; }
    virtual std::unique_ptr<Record> _getRecord() const;

    /// A base's label with the name of the derived kind added.
    static std::string getUpdatedLabel(const std::string& label, const std::string& name) { return label + "/" + name; }

private:
    bool _isReportable = false;
};

} // namespace Quillon
