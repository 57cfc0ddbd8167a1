#include <velmora/generation/Clock.h>

#include <Brindle/core/Exception.h>

#include <QDateTime>
#include <QLocale>

#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string_view>

namespace Velmora {

namespace {

constexpr const char* epochVariable = "SOURCE_DATE_EPOCH";
constexpr std::uint64_t lastSecond = 253402300799; // of the year 9999

/// In the digits 0 to 9 whatever the locale is.
std::string toLabel(const QDateTime& time) {
    return QLocale::c().toString(time, QStringLiteral("dd/MM/yyyy - hh:mm")).toStdString();
}

/// Seconds since 1970, if the environment gives them.
std::optional<qint64> getGivenTime() {
    const char* const variable = std::getenv(epochVariable);
    if (!variable)
        return std::nullopt;
    const std::string_view text = variable;
    std::uint64_t seconds = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), seconds);
    if (error != std::errc() || end != text.data() + text.size() || seconds > lastSecond) {
        throw Brindle::withFields(Brindle::Fatal(std::string(epochVariable) +
                                                 " should be a whole number of seconds since 1970 or not be set"),
                                  {{"value", std::string(text)}});
    }
    return static_cast<qint64>(seconds);
}

} // namespace

std::string getDateLabel() {
    return toLabel(QDateTime::currentDateTime());
}

std::string getGenerationDateLabel() {
    const auto time = getGivenTime();
    return time ? toLabel(QDateTime::fromSecsSinceEpoch(*time, Qt::UTC)) : getDateLabel();
}

void requireGenerationDate() {
    getGivenTime();
}

} // namespace Velmora
