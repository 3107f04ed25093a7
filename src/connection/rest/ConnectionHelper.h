#pragma once

#include <QNetworkProxy>

class QUrl;

/// Chooses the network proxy. Callable from any thread.
class ConnectionHelper {
public:
    /// The first proxy of the system's list for this address that HTTP can go through, or a
    /// default-built one.
    static QNetworkProxy getProxy(const QUrl &url);
    /// getProxy(), or NoProxy where the user has switched the system's proxy off.
    static QNetworkProxy configuredProxy(const QUrl &url);
};
