#pragma once

#include "connection/BalancerRestAccessPoint.h"

#include <QDateTime>
#include <QHash>
#include <QMutex>
#include <QObject>

/// Why a server is not to be tried.
enum class DisconnectStatus {
    None = 0,
    ConnectionLost = 1,
};

/// What is remembered of one server.
struct ServerConnectionStatus {
    QString serverId;
    /// Local time of the last SetStatus; null for an unknown server.
    QDateTime time;
    DisconnectStatus status = DisconnectStatus::None;
};

/// Fetches the balancer's list, sorts it, keeps it in the settings and remembers which servers
/// have failed. GetServers blocks for up to two REST requests and the others wait for it; all are
/// callable from any thread, GetServers from one at a time.
class ServerStatusStorage : public QObject {
    Q_OBJECT

public:
    /// The servers in the order in which they are to be tried: the recommended one, then the
    /// others by rising load.
    /// @param fromBalancer  set to whether the balancer answered; otherwise the list is the cached
    QList<ServerInfoDTO> GetServers(bool *fromBalancer);

    DisconnectStatus GetStatus(const QString &serverId) const;
    ServerConnectionStatus GetConnectionStatus(const QString &serverId) const;
    void SetStatus(const QString &serverId, DisconnectStatus status);
    /// Forgets all failures; the next request tries TLS first.
    void Clear();

    /// Seconds from the server's last report to the time of the cached list; 0 without a list.
    static int TimeSinceUpdate(const ServerInfoDTO &server);

signals:
    void ReceivedVACSettingsFromBalancer(bool enableVAC, bool receivedFromBalancer);

private:
    ServerListDTO GetServersFromBalancer();
    ServerListDTO GetServersInternal();
    static ServerListDTO usableCachedList();
    static QString balancerAuthority();
    static ServerListDTO cachedServerList();
    static void setCachedServerList(const ServerListDTO &list);
    static void SwitchToHttps();
    static void SwitchToHttp();

    BalancerRestAccessPoint m_balancer;
    bool m_tryHttpsFirst = true;
    QHash<QString, ServerConnectionStatus> m_statuses;
    mutable QMutex m_mutex;
};
