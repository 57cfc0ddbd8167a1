#include <velmora/catalogue/LocalAccessManager.h>

#include <QFileInfo>
#include <QNetworkRequest>

namespace Velmora {

namespace {

/// A pipe would be waited for, and what is large keep the window from its other work.
bool isBearable(const QFileInfo& file) {
    constexpr qint64 largest = 16LL * 1024 * 1024; // bytes
    return file.isFile() && file.size() <= largest;
}

} // namespace

QNetworkReply* LocalAccessManager::createRequest(Operation operation, const QNetworkRequest& request,
                                                 QIODevice* outgoingData) {
    const QUrl url = request.url();
    if (url.scheme() == QLatin1String("data") ||
        (url.scheme() == QLatin1String("file") && isBearable(QFileInfo(url.toLocalFile()))))
        return QNetworkAccessManager::createRequest(operation, request, outgoingData);
    QNetworkRequest refused(request);
    refused.setUrl(QUrl()); // an empty address fails without anything being sent
    return QNetworkAccessManager::createRequest(operation, refused, outgoingData);
}

} // namespace Velmora
