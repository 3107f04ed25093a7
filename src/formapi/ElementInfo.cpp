#include "formapi/ElementInfo.h"

ElementInfo::ElementInfo(const QJsonObject &object)
    : m_key(object[QLatin1String("Key")].toString()) {}

QJsonValue ElementInfo::toJson() const {
    return QJsonObject{
        {QStringLiteral("Key"), m_key},
    };
}
