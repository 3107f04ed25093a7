#include "connection/ServersConnectionSource.h"

#include "core/settings/ServersConnectionSettings.h"

#include <algorithm>

namespace {

auto withId(const QString &serverId) {
    return [serverId](const ServerInfoDTO &server) { return server.serverId() == serverId; };
}

} // namespace

ServersConnectionSource::ServersConnectionSource() {
    connect(&m_storage, &ServerStatusStorage::ReceivedVACSettingsFromBalancer, this,
            &ServersConnectionSource::onReceivedVACSettingsFromBalancer, Qt::DirectConnection);
}

void ServersConnectionSource::onReceivedVACSettingsFromBalancer(bool enableVAC,
                                                                bool receivedFromBalancer) {
    emit ReceivedVACSettingsFromBalancer(enableVAC, receivedFromBalancer);
}

void ServersConnectionSource::Reset() {
    m_lastUpdate = QDateTime();
    m_pendingServers.clear();
    m_usedServers.clear();
    m_storage.Clear();
}

bool ServersConnectionSource::mayBeTriedAgain(const ServerInfoDTO &server,
                                              int refreshMinTimeout) const {
    const QDateTime failedAt = m_storage.GetConnectionStatus(server.serverId()).time;
    const qint64 age = failedAt.isValid() ? failedAt.secsTo(QDateTime::currentDateTime()) : 0;
    return age > refreshMinTimeout && age > ServerStatusStorage::TimeSinceUpdate(server);
}

void ServersConnectionSource::UpdateServers() {
    bool fromBalancer = false;
    const QList<ServerInfoDTO> fresh = m_storage.GetServers(&fromBalancer);
    if (!fromBalancer)
        return;
    const int refreshMinTimeout = ServersConnectionSettings().ServerStatusRefreshMinTimeout;
    QList<ServerInfoDTO> next;
    for (const ServerInfoDTO &server : fresh) {
        const auto used =
            std::find_if(m_usedServers.begin(), m_usedServers.end(), withId(server.serverId()));
        if (used == m_usedServers.end()) {
            next.append(server);
        } else if (mayBeTriedAgain(server, refreshMinTimeout)) {
            m_storage.SetStatus(server.serverId(), DisconnectStatus::None);
            m_usedServers.erase(used);
            next.append(server);
        }
    }
    m_pendingServers = next;
    m_lastUpdate = QDateTime::currentDateTime();
    m_lastServerCount = next.size();
}

std::optional<ServerInfoDTO> ServersConnectionSource::GetNextServer() {
    if (!m_lastUpdate.isValid() ||
        m_lastUpdate.secsTo(QDateTime::currentDateTime()) > m_listRefreshTimeout)
        UpdateServers();
    if (m_pendingServers.isEmpty())
        return std::nullopt;
    m_usedServers.append(m_pendingServers.takeFirst());
    return m_usedServers.last();
}
