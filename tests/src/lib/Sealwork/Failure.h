#pragma once

#include <Brindle/core/Exception.h>

#include <algorithm>
#include <initializer_list>
#include <string_view>

#include <QString>

/// What the call throws, as "kind: message [field=value] ..." with those of its fields that are asked for; empty when
/// it throws nothing.
template <typename Call>
QString failureOf(Call call, std::initializer_list<std::string_view> fields = {}) {
    const auto describe = [&fields](const char* kind, const Brindle::Exception& exception) {
        QString text =
            QStringLiteral("%1: %2").arg(QLatin1String(kind), QString::fromStdString(exception.getMessage()));
        for (const auto& [name, value] : exception.getFields())
            if (std::ranges::find(fields, name) != fields.end())
                text += QStringLiteral(" [%1=%2]").arg(QString::fromStdString(name), QString::fromStdString(value));
        return exception.getLocation().line > 0 ? text : text + QStringLiteral(" (nowhere)");
    };
    try {
        call();
    } catch (const Brindle::InvalidRequest& exception) {
        return describe("InvalidRequest", exception);
    } catch (const Brindle::Fatal& exception) {
        return describe("Fatal", exception);
    }
    return {};
}
