#pragma once

namespace Velmora {

/// Whether forms take their values from the settings store when they are made and leave them there in the end. A
/// program without a window turns it off before it makes a form.
class FormMemory {
public:
    static bool isKept() { return _isKept; }
    static void turnOff() { _isKept = false; }

private:
    static inline bool _isKept = true;
};

} // namespace Velmora
