#pragma once

#include <velmora/fields/FieldType.h>

#include <QString>
#include <QVariant>

#include <functional>
#include <memory>
#include <optional>

namespace Velmora {

/// What a form does with one of its editors, whatever its kind.
struct FormField {
    QString key;   ///< In the form's settings group.
    QString label; ///< As the user reads it.
    std::shared_ptr<const FieldType> type;
    std::optional<QVariant> resetValue;            ///< Nothing when a reset leaves the editor alone.
    std::function<QVariant()> getValue;            ///< What is stored.
    std::function<void(const QVariant&)> setValue; ///< Takes what was stored; a value of no use is ignored.
};

} // namespace Velmora
