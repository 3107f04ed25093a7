#pragma once

#include "connection/messages/JsonConvertable.h"

#include <QJsonObject>
#include <QMetaType>
#include <QString>

/// The icon of a notification; any other number shows none.
enum class NotificationType { Information = 1, Warning = 2, Critical = 3 };

/// What a notification asks of the client; any other number asks nothing.
enum class NotificationAction { Show = 0, Disconnect = 1, StopRecognition = 2 };

/// A message for the user, from the server or from the client itself. The title and the force
/// flag are not on the wire: only the client's own notifications set them.
class UserNotification : public JsonConvertable {
public:
    UserNotification() = default;
    UserNotification(NotificationType type, const QString &title, const QString &message)
        : m_message(message), m_title(title), m_type(type) {}
    explicit UserNotification(const QJsonObject &object);

    QString message() const { return m_message; }
    void setMessage(const QString &message) { m_message = message; }
    QString title() const { return m_title; }
    void setTitle(const QString &title) { m_title = title; }
    NotificationType type() const { return m_type; }
    void setType(NotificationType type) { m_type = type; }
    NotificationAction action() const { return m_action; }
    void setAction(NotificationAction action) { m_action = action; }
    /// Shown also while there is no connection.
    bool force() const { return m_force; }
    void setForce(bool force) { m_force = force; }

    /// @throws Exception  always: the record only ever arrives
    QJsonValue toJson() const override;

private:
    QString m_message;
    QString m_title;
    NotificationType m_type = NotificationType{};
    NotificationAction m_action = NotificationAction::Show;
    bool m_force = false;
};
Q_DECLARE_METATYPE(UserNotification)
