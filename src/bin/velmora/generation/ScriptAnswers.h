#pragma once

#include <QString>
#include <QStringList>

#include <variant>

namespace Velmora {

using FactValue = std::variant<long long, double, QString>;

/// What a script tells of a design, such as ("Latency", 9, "clocks").
struct Fact {
    QString label;
    FactValue value;
    QString unit; ///< May be empty.
};

/// What a script finds wrong with a form.
struct FailedCheck {
    QString message;
    QStringList keys; ///< Of the fields that it is about.
};

} // namespace Velmora
