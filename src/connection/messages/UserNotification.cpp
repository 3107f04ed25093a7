#include "connection/messages/UserNotification.h"

#include "core/Exception.h"

UserNotification::UserNotification(const QJsonObject &object)
    : m_message(object[QLatin1String("Message")].toString()),
      m_type(static_cast<NotificationType>(object[QLatin1String("Type")].toInt())),
      m_action(static_cast<NotificationAction>(object[QLatin1String("Action")].toInt())) {}

QJsonValue UserNotification::toJson() const {
    throw Exception(QStringLiteral("Not implemented"));
}
