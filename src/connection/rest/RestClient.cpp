#include "connection/rest/RestClient.h"

#include "connection/rest/RestHttpWorker.h"
#include "connection/rest/RestJsonWorker.h"
#include "connection/rest/SslCertificateVerification.h"

#include <QJsonDocument>

namespace {

constexpr int timeoutMs = 7000;
const char *const httpFormat = "http://%1:%2%3%4";
const char *const httpsFormat = "https://%1:%2%3%4";

} // namespace

RestClient::RestClient() : m_urlFormat(QString::fromLatin1(httpFormat)) {
    qRegisterMetaType<Method>("Method");
    qRegisterMetaType<ParameterDictionary>("ParameterDictionary");
}

void RestClient::initialize(const QString &host, int port, bool useTls) {
    m_host = host;
    m_port = port;
    m_urlFormat = QString::fromLatin1(useTls ? httpsFormat : httpFormat);
    if (useTls) {
        m_sslConfiguration = QSslConfiguration::defaultConfiguration();
        m_sslConfiguration->setPeerVerifyMode(configuredPeerVerifyMode());
    }
}

template <typename Worker>
auto RestClient::run(const QString &url, Method httpMethod, const QByteArray &data,
                     const ParameterDictionary &parameters) {
    const QString fullUrl = m_urlFormat.arg(m_host).arg(m_port).arg(m_apiPrefix, trimSlashes(url));
    Worker worker(m_sslConfiguration ? &*m_sslConfiguration : nullptr, m_headers);
    connect(this, &RestClient::startExecute, &worker, &StubRestWorker::restExecute,
            Qt::BlockingQueuedConnection);
    emit startExecute(fullUrl, httpMethod, data, parameters);
    return worker.waitForResult(timeoutMs);
}

QJsonObject RestClient::execute(const QString &url, Method httpMethod, const QByteArray &data,
                                const ParameterDictionary &parameters) {
    const QJsonObject result = run<RestJsonWorker>(url, httpMethod, data, parameters);
    const QByteArray text = QJsonDocument(result).toJson(QJsonDocument::Indented);
    // What the answer holds may be the user's own.
    qInfo().noquote() << "REST ANSWER" << url.section(QLatin1Char('?'), 0, 0) << "-" << text.size()
                      << "bytes";
    qDebug().noquote() << text;
    return result;
}

QString RestClient::executeClearHttp(const QString &url, Method httpMethod, const QByteArray &data,
                                     const ParameterDictionary &parameters) {
    const QString result = run<RestHttpWorker>(url, httpMethod, data, parameters);
    qDebug().noquote() << result;
    return result;
}

void RestClient::addHeaders(const QMap<QByteArray, QByteArray> &headers) {
    qDebug().noquote() << "Headers:\n";
    for (auto header = headers.cbegin(); header != headers.cend(); ++header) {
        qDebug().noquote().nospace() << "   " << header.key() << ":" << header.value();
        m_headers.insert(header.key(), header.value());
    }
}

QString RestClient::trimSlashes(const QString &text) {
    const auto isTrimmed = [](QChar character) {
        return character == QLatin1Char('/') || character == QLatin1Char(' ');
    };
    int begin = 0;
    int end = text.size();
    while (begin < end && isTrimmed(text[begin]))
        ++begin;
    while (end > begin && isTrimmed(text[end - 1]))
        --end;
    return text.mid(begin, end - begin);
}
