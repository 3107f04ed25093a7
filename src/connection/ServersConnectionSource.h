#pragma once

#include "connection/ServerStatusStorage.h"

#include <optional>

/// Which server to try next: a queue of those still to be tried and a list of those that were.
/// Used by the connection manager on its thread; GetNextServer may block for a request to the
/// balancer.
class ServersConnectionSource : public QObject {
    Q_OBJECT

public:
    ServersConnectionSource();

    /// @param seconds  how long a list stands before it is fetched again
    void setListRefreshTimeout(int seconds) { m_listRefreshTimeout = seconds; }

    /// Takes the best server out of the queue; nothing when the queue is used up.
    std::optional<ServerInfoDTO> GetNextServer();

    /// Fetches a new list. Without an answer of the balancer everything stays as it is.
    void UpdateServers();

    /// Forgets everything but lastServerCount(), for a new pass.
    void Reset();

    /// How many servers the last list that came gave; 0 before the first.
    int lastServerCount() const { return m_lastServerCount; }

    ServerStatusStorage &storage() { return m_storage; }

signals:
    void ReceivedVACSettingsFromBalancer(bool enableVAC, bool receivedFromBalancer);

public slots:
    void onReceivedVACSettingsFromBalancer(bool enableVAC, bool receivedFromBalancer);

private:
    bool mayBeTriedAgain(const ServerInfoDTO &server, int refreshMinTimeout) const;

    ServerStatusStorage m_storage;
    QDateTime m_lastUpdate;
    QList<ServerInfoDTO> m_pendingServers;
    QList<ServerInfoDTO> m_usedServers;
    int m_listRefreshTimeout = 0;
    int m_lastServerCount = 0;
};
