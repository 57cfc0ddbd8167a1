#include <velmora/catalogue/LocalAccessManager.h>

#include <QNetworkRequest>

namespace Velmora {

QNetworkReply* LocalAccessManager::createRequest(Operation operation, const QNetworkRequest& request,
                                                 QIODevice* outgoingData) {
    const QString scheme = request.url().scheme();
    if (scheme == QLatin1String("file") || scheme == QLatin1String("data"))
        return QNetworkAccessManager::createRequest(operation, request, outgoingData);
    QNetworkRequest refused(request);
    refused.setUrl(QUrl()); // an empty address fails without anything being sent
    return QNetworkAccessManager::createRequest(operation, refused, outgoingData);
}

} // namespace Velmora
