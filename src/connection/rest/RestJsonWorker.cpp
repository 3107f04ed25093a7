#include "connection/rest/RestJsonWorker.h"

#include "core/Exception.h"

#include <QJsonArray>
#include <QJsonDocument>

QJsonObject RestJsonWorker::createResult(QNetworkReply *reply) {
    if (reply->error() != QNetworkReply::NoError)
        return createDefaultErrorResult(debugTextOf(reply));
    const QByteArray body = reply->readAll();
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(body, &error);
    if (error.error != QJsonParseError::NoError) {
        qDebug().noquote().nospace() << "Json parse error: \n" << body;
        throw Exception(error.errorString());
    }
    if (document.isArray())
        return QJsonObject{{QStringLiteral("non_field_data"), document.array()}};
    return document.object();
}

QJsonObject RestJsonWorker::createDefaultErrorResult(const QString &debugText) {
    return createErrorResult(debugText);
}
