#pragma once

#include "connection/rest/Method.h"

#include <QByteArray>
#include <QNetworkRequest>
#include <QSslError>

class QNetworkAccessManager;
class QNetworkReply;
class QSslConfiguration;

// The steps of a REST request that do not depend on the kind of its result. All run on the thread
// of the request.

/// One block of log lines on the TLS library in use.
void logSslLibrary();

QUrl buildUrl(const QString &url, const ParameterDictionary &parameters);

/// @param sslConfiguration  null for the default
QNetworkRequest buildRequest(const QUrl &url, const QSslConfiguration *sslConfiguration,
                             const QMap<QByteArray, QByteArray> &headers);

/// @return the reply in flight, owned by the access manager
QNetworkReply *sendRequest(QNetworkAccessManager *manager, const QNetworkRequest &request,
                           Method httpMethod, const QByteArray &data);

/// Only logs: whether an error ends the request is decided by the verify mode.
void onSsslError(const QList<QSslError> &errors);

/// The text for the log and for support: number and text of the reply's error, without the query.
QString debugTextOf(const QNetworkReply *reply);

/// The error object that every consumer of a REST result expects.
QJsonObject createErrorResult(const QString &text, const QString &debugText);
/// The same with the text that the user is to see by default.
QJsonObject createErrorResult(const QString &debugText);
