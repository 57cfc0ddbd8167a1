#pragma once

#include <velmora/form/Form.h>

#include <Brindle/core/Console.h>

#include <string>

namespace Velmora {

/// The checks of a form, in their order: only the first one that fails is told, as one error on the console, and the
/// parts of the form that it looked at are marked. A new round of checks begins without a mark.
class FormCheck {
public:
    /// The form is kept, not owned.
    explicit FormCheck(const Form& form) : _mark(form.getMark()) { _mark.clear(); }

    FormCheck& require(bool holds, const std::string& message, const CheckedParts& parts) {
        if (_passed && !holds) {
            Brindle::console.error(message);
            _mark.set(parts, QString::fromStdString(message));
            _passed = false;
        }
        return *this;
    }

    /// True when every check held.
    bool hasPassed() const { return _passed; }

private:
    CheckMark& _mark;
    bool _passed = true;
};

} // namespace Velmora
