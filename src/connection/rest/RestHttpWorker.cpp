#include "connection/rest/RestHttpWorker.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace {

/// What the server says of its own connection and of the bytes on it, which have been decoded.
bool concernsTransfer(const QByteArray &name) {
    static const QList<QByteArray> names{
        "connection", "content-encoding", "content-length",    "keep-alive", "te",
        "trailer",    "proxy-connection", "transfer-encoding", "upgrade"};
    return names.contains(name.toLower());
}

} // namespace

QString RestHttpWorker::createResult(QNetworkReply *reply) {
    if (reply->error() != QNetworkReply::NoError)
        return createDefaultErrorResult(debugTextOf(reply));
    return serializeReply(reply);
}

QString RestHttpWorker::serializeReply(QNetworkReply *reply) {
    const QString status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toString();
    const QString reason = reply->attribute(QNetworkRequest::HttpReasonPhraseAttribute).toString();
    QString text = QStringLiteral("HTTP/1.1 %1 %2\r\n").arg(status, reason);
    const QByteArray body = QString::fromUtf8(reply->readAll()).trimmed().toUtf8();
    const QList<QByteArray> names = reply->rawHeaderList();
    for (const QByteArray &name : names) {
        if (concernsTransfer(name))
            continue;
        // Qt gives several cookies as one value.
        const QList<QByteArray> values = reply->rawHeader(name).split('\n');
        for (const QByteArray &value : values) {
            text += QString::fromLatin1(name) + QLatin1Char(':') + QString::fromUtf8(value) +
                    QLatin1String("\r\n");
        }
    }
    text += QStringLiteral("Content-Length:%1\r\nConnection: close\r\n").arg(body.size());
    return text + QLatin1String("\r\n") + QString::fromUtf8(body);
}

QString RestHttpWorker::createDefaultErrorResult(const QString &debugText) {
    const QByteArray body =
        QJsonDocument(createErrorResult(debugText)).toJson(QJsonDocument::Indented).trimmed();
    return QStringLiteral("HTTP/1.1 504 Gateway Timeout\nContent-Length: %1\r\n"
                          "Content-Type: application/json\r\n\r\n")
               .arg(body.size()) +
           QString::fromUtf8(body);
}
