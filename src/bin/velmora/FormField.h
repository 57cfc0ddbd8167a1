#pragma once

#include <QString>
#include <QVariant>

#include <functional>

namespace Velmora {

/// What a form does with one of its editors, whatever its kind.
struct FormField {
    QString key;                                   ///< In the form's settings group.
    std::function<QVariant()> getValue;            ///< What is stored.
    std::function<void(const QVariant&)> setValue; ///< Takes what was stored; a value of no use is ignored.
    std::function<void()> reset = [] {};           ///< Puts the editor to its reset value.
};

} // namespace Velmora
