#pragma once

#include <QNetworkAccessManager>

namespace Velmora {

/// Network access that reaches regular files of a bearable size and inline data only; any other request fails as
/// forbidden.
class LocalAccessManager : public QNetworkAccessManager {
    Q_OBJECT

public:
    using QNetworkAccessManager::QNetworkAccessManager;

protected:
    QNetworkReply* createRequest(Operation operation, const QNetworkRequest& request, QIODevice* outgoingData) override;
};

} // namespace Velmora
