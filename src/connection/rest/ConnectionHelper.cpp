#include "connection/rest/ConnectionHelper.h"

#include "core/settings/ClientInfoSettings.h"

#include <QDebug>
#include <QNetworkProxyFactory>
#include <QNetworkProxyQuery>
#include <QUrl>

#include <optional>

namespace {

bool isUsable(const QNetworkProxy &proxy) {
    return proxy.type() == QNetworkProxy::DefaultProxy ||
           proxy.type() == QNetworkProxy::HttpProxy ||
           proxy.type() == QNetworkProxy::HttpCachingProxy;
}

void logProxy(const char *what, const QNetworkProxy &proxy) {
    qDebug().noquote().nospace() << what << proxy.hostName() << " " << proxy.port() << " "
                                 << proxy.type();
}

QNetworkProxy firstUsable(const QList<QNetworkProxy> &proxies) {
    std::optional<QNetworkProxy> selected;
    for (const QNetworkProxy &proxy : proxies) {
        if (!isUsable(proxy)) {
            logProxy("rejected proxy: ", proxy);
        } else if (selected) {
            logProxy("avaliable proxy: ", proxy);
        } else {
            logProxy("selected proxy: ", proxy);
            selected = proxy;
        }
    }
    return selected.value_or(QNetworkProxy());
}

} // namespace

QNetworkProxy ConnectionHelper::getProxy(const QUrl &url) {
    try {
        const QList<QNetworkProxy> proxies = QNetworkProxyFactory::systemProxyForQuery(
            QNetworkProxyQuery(url, QNetworkProxyQuery::UrlRequest));
        qDebug().nospace() << "proxy length: " << proxies.size();
        return firstUsable(proxies);
    } catch (const std::exception &error) {
        qWarning().noquote().nospace() << "Get proxy error: " << error.what();
    } catch (...) {
        qWarning() << "Get proxy error: ";
    }
    return QNetworkProxy();
}

QNetworkProxy ConnectionHelper::configuredProxy(const QUrl &url) {
    return ClientInfoSettings().UseProxy ? getProxy(url) : QNetworkProxy(QNetworkProxy::NoProxy);
}
