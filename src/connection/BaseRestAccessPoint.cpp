#include "connection/BaseRestAccessPoint.h"

#include "connection/CookiesSource.h"
#include "core/AppVariables.h"
#include "core/settings/ClientInfoSettings.h"

BaseRestAccessPoint::BaseRestAccessPoint() {
    const QMap<QByteArray, QString> cookies{
        {"VERSION", AppVariables::buildProperty("Version")},
        {"CLIENT_APP_NAME", QStringLiteral("QTClient")},
        {"DESKTOP_ID", ClientInfoSettings().getOrCreateDesktopId()},
    };
    QByteArray header;
    for (auto cookie = cookies.cbegin(); cookie != cookies.cend(); ++cookie)
        header += cookie.key() + '=' + CookiesSource::encode(cookie.value()) + ';';
    m_client.addHeaders({{"Cookie", header}});
}

QJsonValue BaseRestAccessPoint::request(const QString &path, Method httpMethod,
                                        const ParameterDictionary &parameters,
                                        const QByteArray &data) {
    const auto settings = getSettings();
    m_client.initialize(settings->Ip, settings->RestPort, settings->UseTls);
    const QJsonObject result = m_client.execute(path, httpMethod, data, parameters);
    const QJsonValue error = result[QLatin1String("Error")];
    if (error.isNull() || error.isUndefined())
        return result[QLatin1String("Data")];
    const QJsonObject details = error.toObject();
    throw Exception(QStringLiteral("%1: %2 | %3")
                        .arg(path, details[QLatin1String("Text")].toString(),
                             details[QLatin1String("DebugText")].toString()));
}
