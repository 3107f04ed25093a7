#include "connection/rest/RestRequest.h"

#include <QDebug>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslSocket>
#include <QUrlQuery>

void logSslLibrary() {
    const QString line(59, QLatin1Char('-'));
    qInfo().noquote() << line;
    qInfo().noquote().nospace() << "SSL build Version: "
                                << QSslSocket::sslLibraryBuildVersionString();
    qInfo().noquote().nospace() << "SSL runtime Version: " << QSslSocket::sslLibraryVersionString();
    qInfo().noquote().nospace() << "SSL support: "
                                << (QSslSocket::supportsSsl() ? "true" : "false");
    qInfo().noquote() << line;
}

QUrl buildUrl(const QString &url, const ParameterDictionary &parameters) {
    QUrl result(url, QUrl::TolerantMode);
    QUrlQuery query;
    for (auto item = parameters.cbegin(); item != parameters.cend(); ++item)
        query.addQueryItem(item.key(), item.value());
    if (!query.isEmpty())
        result.setQuery(query);
    return result;
}

QNetworkRequest buildRequest(const QUrl &url, const QSslConfiguration *sslConfiguration,
                             const QMap<QByteArray, QByteArray> &headers) {
    QNetworkRequest request(url);
    request.setRawHeader("Content-Type", "application/json");
    if (sslConfiguration)
        request.setSslConfiguration(*sslConfiguration);
    for (auto header = headers.cbegin(); header != headers.cend(); ++header)
        request.setRawHeader(header.key(), header.value());
    return request;
}

QNetworkReply *sendRequest(QNetworkAccessManager *manager, const QNetworkRequest &request,
                           Method httpMethod, const QByteArray &data) {
    // What a form asks for by name, words that were typed perhaps, stands in the query.
    const QString url = request.url().toString(QUrl::RemoveQuery);
    switch (httpMethod) {
    case Method::Post:
        qInfo().noquote().nospace() << "POST REQUEST " << url << "\n";
        return manager->post(request, data);
    case Method::Put:
        qInfo().noquote().nospace() << "PUT REQUEST " << url << "\n";
        return manager->put(request, data);
    case Method::Get:
        break;
    }
    qInfo().noquote().nospace() << "GET REQUEST " << url << "\n";
    return manager->get(request);
}

void onSsslError(const QList<QSslError> &errors) {
    QSslCertificate last;
    for (const QSslError &error : errors) {
        const QSslCertificate certificate = error.certificate();
        if (certificate.isSelfSigned())
            qWarning() << "Self signed SSL certificate";
        qWarning().noquote().nospace() << "SSL error: " << error.errorString() << "\n";
        if (certificate != last) {
            qDebug().noquote() << certificate.toText();
            last = certificate;
        }
    }
}

QString debugTextOf(const QNetworkReply *reply) {
    // Qt's text may hold the whole address, and what was asked for stands in its query.
    const QUrl url = reply->url();
    const QString error =
        reply->errorString().replace(url.toString(), url.toString(QUrl::RemoveQuery));
    return QStringLiteral("Код: %1\nОшибка: %2").arg(reply->error()).arg(error);
}

QJsonObject createErrorResult(const QString &text, const QString &debugText) {
    const QJsonObject error{
        {QStringLiteral("Text"), text},
        {QStringLiteral("DebugText"), debugText},
    };
    return QJsonObject{
        {QStringLiteral("Error"), error},
        {QStringLiteral("Data"), QString()},
    };
}

QJsonObject createErrorResult(const QString &debugText) {
    return createErrorResult(
        QObject::tr("Не удалось получить данные с сервера. Попробуйте выполнить запрос позднее"),
        debugText);
}
