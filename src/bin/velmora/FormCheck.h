#pragma once

#include <Brindle/Console.h>

#include <string>

namespace Velmora {

/// The checks of a form, in their order: only the first one that fails is told, as one error on the console.
class FormCheck {
public:
    FormCheck& require(bool holds, const std::string& message) {
        if (_passed && !holds) {
            Brindle::console.error(message);
            _passed = false;
        }
        return *this;
    }

    /// True when every check held.
    bool hasPassed() const { return _passed; }

private:
    bool _passed = true;
};

} // namespace Velmora
