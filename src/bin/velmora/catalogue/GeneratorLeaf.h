#pragma once

#include <velmora/generation/Generation.h>

namespace Velmora {

class Form;

/// What every configuration form of an IP offers besides being a widget.
class GeneratorLeaf {
public:
    GeneratorLeaf(const GeneratorLeaf&) = delete;
    GeneratorLeaf& operator=(const GeneratorLeaf&) = delete;

    virtual Form& getForm() = 0;
    /// What the Generate button starts.
    virtual Generation getGeneration() const = 0;

protected:
    GeneratorLeaf() = default;
    ~GeneratorLeaf() = default; // a form is deleted as the widget that it is
};

} // namespace Velmora
