#pragma once

#include <velmora/rules/IPDescription.h>

#include <QJsonObject>

namespace GenerateTool {

/// Who an IP is: name, company, uid, category and variants.
QJsonObject toJson(const Velmora::IPDescription& description);

} // namespace GenerateTool
