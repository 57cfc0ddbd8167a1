#include <Brindle/widgets/Utf8.h>

#include <Brindle/core/TextLines.h>

#include <QTextCodec>

namespace Brindle {

namespace {

bool isUtf8(std::string_view text) {
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    QTextCodec::codecForName("UTF-8")->toUnicode(text.data(), static_cast<int>(text.size()), &state);
    return state.invalidChars == 0 && state.remainingChars == 0;
}

} // namespace

std::optional<std::size_t> findLineOutsideUtf8(std::string_view text) {
    TextLines lines(text);
    while (const auto line = lines.nextOrLast()) {
        if (!isUtf8(*line))
            return lines.getLineNumber();
    }
    return std::nullopt;
}

} // namespace Brindle
