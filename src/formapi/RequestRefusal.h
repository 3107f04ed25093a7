#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

class HttpRequestBuffer;

/// Why a request is not handed on, for the client and for the log.
struct RequestRefusal {
    /// Number and words of HTTP.
    QByteArray status;
    QString text;
    QString debugText;
};

/// Judges a request by its header lines, before anything of it is handed on. The settings are read.
/// @param port  the one that the request came to
/// @return nothing if it may pass
std::optional<RequestRefusal> refusalOf(const HttpRequestBuffer &request, quint16 port);
