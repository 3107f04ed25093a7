#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QMap>
#include <QString>

/// One HTTP/1.1 request.
struct HttpRequest {
    /// What became of a parse.
    enum class Progress {
        Incomplete, ///< more bytes are needed
        Complete,
        Malformed,
        TooLarge, ///< more than 64 kB of head or 16 MB of body
    };

    QByteArray method;
    QString path;
    QMap<QString, QString> query;         ///< decoded
    QMap<QByteArray, QByteArray> headers; ///< names in lower case
    QByteArray body;

    /// Reads a request from the bytes that have arrived so far.
    Progress parse(const QByteArray &bytes);

    /// For the log of events.
    QJsonObject toJson() const;

private:
    bool parseHead(const QByteArray &head);
    bool parseTarget(const QByteArray &target);
};
