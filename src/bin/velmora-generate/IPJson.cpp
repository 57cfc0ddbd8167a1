#include <velmora-generate/IPJson.h>

#include <QJsonArray>

namespace GenerateTool {

QJsonObject toJson(const Velmora::IPDescription& description) {
    QJsonArray variants;
    for (const std::string& variant : description.variants)
        variants += QString::fromStdString(variant);
    return {{"name", QString::fromStdString(description.name)},
            {"company", QString::fromStdString(description.company)},
            {"uid", QString::fromStdString(description.uid)},
            {"category", QString::fromStdString(description.category)},
            {"variants", variants}};
}

} // namespace GenerateTool
