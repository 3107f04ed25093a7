#include "connection/BalancerRestAccessPoint.h"

#include "core/settings/BalancerConnectionSettings.h"
#include "core/settings/ClientInfoSettings.h"

#include <QDebug>

std::unique_ptr<BaseConnectionSettings> BalancerRestAccessPoint::getSettings() const {
    return std::make_unique<BalancerConnectionSettings>();
}

ServerListDTO BalancerRestAccessPoint::GetServers() {
    const QString host = getSettings()->Ip;
    const ParameterDictionary parameters{
        {QStringLiteral("clientId"), ClientInfoSettings().getOrCreateDesktopId()},
        {QStringLiteral("getVacFeatureStatus"), QStringLiteral("true")},
        {QStringLiteral("requestIp"), host},
    };
    try {
        return getObject<ServerListDTO>(
            QStringLiteral("Servers"), Method::Post,
            [](const QJsonObject &object) { return ServerListDTO(object); }, parameters,
            QByteArray());
    } catch (const std::exception &error) {
        qWarning().noquote() << error.what();
    } catch (...) {
        qWarning() << "Unknown exception on servers request";
    }
    throw Exception(tr("Не удалось получить список серверов от балансера %1").arg(host));
}
