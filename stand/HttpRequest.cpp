#include "stand/HttpRequest.h"

#include <QUrl>
#include <QUrlQuery>

namespace {
constexpr int kMaxHeadBytes = 64 * 1024;
constexpr int kMaxBodyBytes = 16 * 1024 * 1024;
const QByteArray kHeadEnd = QByteArrayLiteral("\r\n\r\n");
} // namespace

HttpRequest::Progress HttpRequest::parse(const QByteArray &bytes) {
    const int headEnd = bytes.indexOf(kHeadEnd);
    if (headEnd > kMaxHeadBytes || (headEnd < 0 && bytes.size() > kMaxHeadBytes))
        return Progress::TooLarge;
    if (headEnd < 0)
        return Progress::Incomplete;
    if (!parseHead(bytes.left(headEnd)))
        return Progress::Malformed;

    bool isNumber = true;
    const QByteArray length = headers.value(QByteArrayLiteral("content-length"), "0");
    const qlonglong bodyBytes = length.toLongLong(&isNumber);
    if (!isNumber || bodyBytes < 0)
        return Progress::Malformed;
    if (bodyBytes > kMaxBodyBytes)
        return Progress::TooLarge;
    const int bodyStart = headEnd + kHeadEnd.size();
    if (bytes.size() - bodyStart < bodyBytes)
        return Progress::Incomplete;
    body = bytes.mid(bodyStart, static_cast<int>(bodyBytes));
    return Progress::Complete;
}

bool HttpRequest::parseHead(const QByteArray &head) {
    QList<QByteArray> lines = head.split('\n');
    const QList<QByteArray> words = lines.takeFirst().trimmed().split(' ');
    if (words.size() != 3 || !words[2].startsWith("HTTP/1."))
        return false;
    method = words[0];
    headers.clear();
    for (const QByteArray &line : lines) {
        const int colon = line.indexOf(':');
        if (colon < 1)
            return false;
        headers.insert(line.left(colon).toLower(), line.mid(colon + 1).trimmed());
    }
    // A body in chunks comes from no client of this service.
    return !headers.contains(QByteArrayLiteral("transfer-encoding")) && parseTarget(words[1]);
}

bool HttpRequest::parseTarget(const QByteArray &target) {
    const QUrl url = QUrl::fromEncoded(target, QUrl::StrictMode);
    if (!target.startsWith('/') || !url.isValid())
        return false;
    path = url.path();
    query.clear();
    for (const auto &item : QUrlQuery(url).queryItems(QUrl::FullyDecoded))
        query.insert(item.first, item.second);
    return true;
}

QJsonObject HttpRequest::toJson() const {
    QJsonObject queryObject;
    for (auto item = query.cbegin(); item != query.cend(); ++item)
        queryObject.insert(item.key(), item.value());
    QJsonObject headersObject;
    for (auto item = headers.cbegin(); item != headers.cend(); ++item)
        headersObject.insert(QString::fromLatin1(item.key()), QString::fromLatin1(item.value()));
    return QJsonObject{
        {QStringLiteral("method"), QString::fromLatin1(method)},
        {QStringLiteral("path"), path},
        {QStringLiteral("query"), queryObject},
        {QStringLiteral("headers"), headersObject},
        {QStringLiteral("body"), QString::fromUtf8(body)},
    };
}
