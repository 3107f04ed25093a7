#pragma once

#include "connection/messages/JsonConvertable.h"

#include <QJsonObject>
#include <QString>

/// The information system that a web form belongs to: its kind, its version, the user in it.
class MISInfo : public JsonConvertable {
public:
    MISInfo() = default;
    /// Takes each key only when the object contains it.
    explicit MISInfo(const QJsonObject &object);

    QString typeId() const { return m_typeId; }
    void setTypeId(const QString &typeId) { m_typeId = typeId; }
    QString version() const { return m_version; }
    void setVersion(const QString &version) { m_version = version; }
    QString user() const { return m_user; }
    void setUser(const QString &user) { m_user = user; }

    QJsonValue toJson() const override;

private:
    QString m_typeId;
    QString m_version;
    QString m_user;
};
