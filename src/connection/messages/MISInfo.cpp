#include "connection/messages/MISInfo.h"

namespace {

void take(const QJsonObject &object, QLatin1String key, QString *member) {
    if (object.contains(key))
        *member = object[key].toString();
}

} // namespace

MISInfo::MISInfo(const QJsonObject &object) {
    take(object, QLatin1String("TypeId"), &m_typeId);
    take(object, QLatin1String("Version"), &m_version);
    take(object, QLatin1String("User"), &m_user);
}

QJsonValue MISInfo::toJson() const {
    return QJsonObject{
        {QStringLiteral("TypeId"), m_typeId},
        {QStringLiteral("Version"), m_version},
        {QStringLiteral("User"), m_user},
    };
}
