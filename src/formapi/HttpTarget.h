#pragma once

#include <QByteArray>

#include <optional>

/// The address in a request line: mostly a mere path, but whole addresses count as well.
struct HttpTarget {
    explicit HttpTarget(const QByteArray &text);

    /// With the port, if there is one; nothing in a mere path.
    std::optional<QByteArray> host;
    /// Path and query.
    QByteArray path;
};
