#pragma once

#include <velmora/generation/Generation.h>

#include <Brindle/core/Location.h>

namespace Velmora {

class Form;

/// What every configuration form of an IP offers besides being a widget.
class GeneratorLeaf {
public:
    GeneratorLeaf(const GeneratorLeaf&) = delete;
    GeneratorLeaf& operator=(const GeneratorLeaf&) = delete;

    virtual Form& getForm() = 0;
    /// What the Generate button starts. Errors that are not in-house ones are located at `caller`.
    virtual Generation getGeneration(const Brindle::Location& caller) const = 0;

protected:
    GeneratorLeaf() = default;
    ~GeneratorLeaf() = default; // a form is deleted as the widget that it is
};

} // namespace Velmora
