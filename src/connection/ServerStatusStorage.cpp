#include "connection/ServerStatusStorage.h"

#include "core/settings/BalancerConnectionSettings.h"
#include "core/settings/CachedServerSettings.h"

#include <QDebug>
#include <QJsonDocument>
#include <QMutexLocker>

#include <algorithm>

namespace {

QList<ServerInfoDTO> inOrderOfTrial(const ServerListDTO &list) {
    QList<ServerInfoDTO> servers = list.serverList();
    const QString recommended =
        list.recommendedServer() ? list.recommendedServer()->serverId() : QString();
    const auto isRecommended = [&recommended](const ServerInfoDTO &server) {
        return !recommended.isEmpty() && server.serverId() == recommended;
    };
    // A list may name the recommended server more than once: two such entries are equal here, or
    // the comparison would not be an order.
    std::stable_sort(
        servers.begin(), servers.end(), [&](const ServerInfoDTO &a, const ServerInfoDTO &b) {
            if (isRecommended(a) != isRecommended(b))
                return isRecommended(a);
            return !isRecommended(a) && a.estimatedLoadLevel() < b.estimatedLoadLevel();
        });
    return servers;
}

} // namespace

QString ServerStatusStorage::balancerAuthority() {
    const BalancerConnectionSettings settings;
    return QStringLiteral("%1:%2").arg(settings.Ip.get()).arg(settings.RestPort.get());
}

ServerListDTO ServerStatusStorage::cachedServerList() {
    const QString text = CachedServerSettings().ServersList;
    return ServerListDTO(QJsonDocument::fromJson(text.toUtf8()).object());
}

void ServerStatusStorage::setCachedServerList(const ServerListDTO &list) {
    CachedServerSettings settings;
    settings.ServersList =
        QString::fromUtf8(QJsonDocument(list.toJson().toObject()).toJson(QJsonDocument::Compact));
    settings.sync();
}

void ServerStatusStorage::SwitchToHttps() {
    BalancerConnectionSettings().UseTls = true;
}

void ServerStatusStorage::SwitchToHttp() {
    BalancerConnectionSettings().UseTls = false;
}

ServerListDTO ServerStatusStorage::GetServersInternal() {
    try {
        ServerListDTO list = m_balancer.GetServers();
        if (list.isValid())
            list.setAuthority(balancerAuthority());
        m_tryHttpsFirst = false;
        return list;
    } catch (const std::exception &error) {
        m_tryHttpsFirst = true;
        qWarning().noquote() << error.what();
    }
    return ServerListDTO();
}

ServerListDTO ServerStatusStorage::GetServersFromBalancer() {
    if (m_tryHttpsFirst) {
        SwitchToHttps();
        const ServerListDTO list = GetServersInternal();
        if (list.isValid())
            return list;
        SwitchToHttp();
    }
    return GetServersInternal();
}

ServerListDTO ServerStatusStorage::usableCachedList() {
    const ServerListDTO cached = cachedServerList();
    const QString authority = cached.authority();
    if (authority.isEmpty() ||
        (cached.isValid() && authority.compare(balancerAuthority(), Qt::CaseInsensitive) == 0))
        return cached;
    // The cache belongs to another balancer.
    setCachedServerList(ServerListDTO());
    return ServerListDTO();
}

QList<ServerInfoDTO> ServerStatusStorage::GetServers(bool *fromBalancer) {
    QMutexLocker locker(&m_mutex);
    ServerListDTO list = GetServersFromBalancer();
    locker.unlock();
    // A balancer that cannot be reached has said nothing: a dictation that goes on with the next
    // server would end at it.
    if (list.isValid())
        emit ReceivedVACSettingsFromBalancer(list.vacEnabled(), list.hasVacEnabled());
    *fromBalancer = list.isValid();
    if (list.isValid())
        setCachedServerList(list);
    else
        list = usableCachedList();
    return inOrderOfTrial(list);
}

DisconnectStatus ServerStatusStorage::GetStatus(const QString &serverId) const {
    return GetConnectionStatus(serverId).status;
}

ServerConnectionStatus ServerStatusStorage::GetConnectionStatus(const QString &serverId) const {
    const QMutexLocker locker(&m_mutex);
    return m_statuses.value(serverId);
}

void ServerStatusStorage::SetStatus(const QString &serverId, DisconnectStatus status) {
    const QMutexLocker locker(&m_mutex);
    m_statuses.insert(serverId, {serverId, QDateTime::currentDateTime(), status});
}

void ServerStatusStorage::Clear() {
    const QMutexLocker locker(&m_mutex);
    m_statuses.clear();
    m_tryHttpsFirst = true;
}

int ServerStatusStorage::TimeSinceUpdate(const ServerInfoDTO &server) {
    return static_cast<int>(server.lastUpdateDate().secsTo(cachedServerList().timeStamp()));
}
