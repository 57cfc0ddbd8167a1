#include <velmora/ips/scopes/TriggerCodes.h>

#include <algorithm>
#include <array>

namespace Velmora {

namespace {

struct TriggerCode {
    const char* value;
    const char* levels; // null for an edge
    const char* edges;

    const char* get(bool withEdges) const { return withEdges ? edges : levels; }
};

constexpr const char* ignore = "Ignore";

constexpr std::array triggerCodes{
    TriggerCode{"0", "00", "000"},
    TriggerCode{"1", "01", "001"},
    TriggerCode{"Rising edge", nullptr, "110"},
    TriggerCode{"Falling edge", nullptr, "100"},
    TriggerCode{"Both edges", nullptr, "111"},
    TriggerCode{ignore, "11", "010"},
};

} // namespace

QString getIgnoreLabel() {
    return QLatin1String(ignore);
}

QStringList getTriggerValues(bool withEdges) {
    QStringList values;
    for (const TriggerCode& code : triggerCodes) {
        if (code.get(withEdges))
            values += QLatin1String(code.value);
    }
    return values;
}

std::optional<QString> getTriggerCode(const QString& value, bool withEdges) {
    const auto code = std::ranges::find(
        triggerCodes, value, [](const TriggerCode& candidate) { return QString(QLatin1String(candidate.value)); });
    if (code == triggerCodes.end() || !code->get(withEdges))
        return std::nullopt;
    return QString(QLatin1String(code->get(withEdges)));
}

} // namespace Velmora
