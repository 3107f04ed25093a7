#include "connection/RestAccessPoint.h"

#include "core/settings/ClientConnectionSettings.h"

#include <QDebug>
#include <QJsonDocument>

std::unique_ptr<BaseConnectionSettings> RestAccessPoint::getSettings() const {
    return std::make_unique<ClientConnectionSettings>();
}

QList<ClientThemeInfo> RestAccessPoint::getThemes() {
    try {
        return getList<ClientThemeInfo>(
            QStringLiteral("Theme"), Method::Get,
            [](const QJsonObject &object) { return ClientThemeInfo(object); },
            ParameterDictionary(), QByteArray());
    } catch (const std::exception &error) {
        qWarning().noquote() << error.what();
    } catch (...) {
        qWarning() << "Unknown exception on themes request";
    }
    throw Exception(tr("Не удалось получить список тем"));
}

bool RestAccessPoint::sendClaim(const JsonConvertable &claim) {
    try {
        const QByteArray body =
            QJsonDocument(claim.toJson().toObject()).toJson(QJsonDocument::Indented);
        getObject<QJsonObject>(
            QStringLiteral("Claim"), Method::Post, [](const QJsonObject &object) { return object; },
            ParameterDictionary(), body);
        return true;
    } catch (const std::exception &error) {
        qWarning().noquote() << error.what();
    } catch (...) {
        qWarning() << "Unknown exception on claim request";
    }
    return false;
}
