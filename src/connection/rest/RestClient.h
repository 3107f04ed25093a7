#pragma once

#include "connection/rest/Method.h"

#include <QJsonObject>
#include <QMap>
#include <QObject>
#include <QSslConfiguration>

#include <optional>

/// Sends an HTTP request and returns its result within seven seconds, whatever happens on the
/// network. Failures come back as values.
///
/// Each call blocks the calling thread, so it is not for a main thread that is to stay responsive.
/// Used from one thread at a time.
class RestClient : public QObject {
    Q_OBJECT

public:
    RestClient();

    /// To be called before every request, so that a change of the settings counts at once.
    void initialize(const QString &host, int port, bool useTls);

    /// What stands between the port and the path; "/api/" at first.
    void setApiPrefix(const QString &prefix) { m_apiPrefix = prefix; }

    /// Sends a request; the answer as JSON, or the error object.
    QJsonObject execute(const QString &url, Method httpMethod, const QByteArray &data,
                        const ParameterDictionary &parameters);

    /// Sends a request; the answer as the text of an HTTP response, 504 on an error.
    QString executeClearHttp(const QString &url, Method httpMethod, const QByteArray &data,
                             const ParameterDictionary &parameters);

    /// Headers of every request from now on; a name that exists gets the new value.
    void addHeaders(const QMap<QByteArray, QByteArray> &headers);

    /// The text without slashes and blanks at its ends.
    static QString trimSlashes(const QString &text);

signals:
    void startExecute(QString url, Method httpMethod, QByteArray data,
                      ParameterDictionary parameters);

private:
    template <typename Worker>
    auto run(const QString &url, Method httpMethod, const QByteArray &data,
             const ParameterDictionary &parameters);

    QString m_apiPrefix = QStringLiteral("/api/");
    QString m_host;
    int m_port = 0;
    std::optional<QSslConfiguration> m_sslConfiguration;
    QString m_urlFormat;
    QMap<QByteArray, QByteArray> m_headers;
};
