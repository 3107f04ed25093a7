#include "formapi/RequestRefusal.h"

#include "core/settings/FormApiSettings.h"
#include "formapi/HttpRequestBuffer.h"
#include "formapi/HttpTarget.h"
#include "formapi/LocalAccess.h"
#include "formapi/RestProxyServer.h"

namespace {

RequestRefusal badRequest(const QString &debugText) {
    return {"400 Bad Request", RestProxyServer::tr("Некорректный формат запроса"), debugText};
}

RequestRefusal forbidden(const QString &debugText) {
    return {"403 Forbidden", RestProxyServer::tr("Доступ запрещён"), debugText};
}

RequestRefusal tooLong(const QByteArray &status, const QString &debugText) {
    return {status, RestProxyServer::tr("Запрос слишком велик"), debugText};
}

std::optional<RequestRefusal> refusalOfHead(const HttpRequestBuffer &request) {
    if (request.isMalformed())
        return badRequest(QStringLiteral("The request line or a header line is malformed"));
    if (request.isHeadTooLong())
        return tooLong("431 Request Header Fields Too Large",
                       QStringLiteral("The header lines are longer than 8 MB"));
    return {};
}

/// A name that is none of this machine's may lead here all the same: its owner lets it, so that his
/// page counts as one of the same origin.
std::optional<RequestRefusal> refusalOfHost(const HttpRequestBuffer &request, quint16 port) {
    if (request.hosts().size() != 1)
        return badRequest(QStringLiteral("The request names not exactly one Host"));
    const QByteArray host = request.hosts().first();
    const QByteArray target = HttpTarget(request.target()).host.value_or(host);
    for (const QByteArray &name : {host, target}) {
        if (!namesThisMachine(name, port))
            return forbidden("The request is for another host: " +
                             shownText(QString::fromLatin1(name)));
    }
    return {};
}

std::optional<RequestRefusal> refusalOfOrigin(const HttpRequestBuffer &request) {
    for (const QByteArray &origin : request.origins()) {
        const QString text = QString::fromLatin1(origin);
        if (!isOriginAllowed(text, FormApiSettings().AllowedOrigins))
            return forbidden("AllowedOrigins does not name the page's origin: " + shownText(text));
    }
    return {};
}

std::optional<RequestRefusal> refusalOfBody(const HttpRequestBuffer &request) {
    if (request.isBodyTooLong())
        return tooLong("413 Payload Too Large", QStringLiteral("The body is longer than 40 MB"));
    // Chunks cannot be handed on.
    if (request.isChunked())
        return RequestRefusal{"411 Length Required",
                              RestProxyServer::tr("Некорректный формат запроса"),
                              QStringLiteral("A body without a length")};
    return {};
}

} // namespace

std::optional<RequestRefusal> refusalOf(const HttpRequestBuffer &request, quint16 port) {
    if (auto refusal = refusalOfHead(request))
        return refusal;
    if (auto refusal = refusalOfHost(request, port))
        return refusal;
    if (auto refusal = refusalOfOrigin(request))
        return refusal;
    return refusalOfBody(request);
}
