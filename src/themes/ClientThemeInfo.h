#pragma once

#include "connection/messages/JsonConvertable.h"

#include <QJsonObject>
#include <QMetaType>
#include <QString>

/// A recognition dictionary that a server offers.
class ClientThemeInfo : public JsonConvertable {
public:
    ClientThemeInfo() = default;
    explicit ClientThemeInfo(const QJsonObject &object);

    /// The identity that the settings store.
    QString id() const { return m_id; }
    void setId(const QString &id) { m_id = id; }
    /// The second identity, or the first where there is none.
    QString themeId() const { return m_themeId.isEmpty() ? m_id : m_themeId; }
    void setThemeId(const QString &themeId) { m_themeId = themeId; }
    QString name() const { return m_name; }
    void setName(const QString &name) { m_name = name; }
    QString version() const { return m_version; }
    void setVersion(const QString &version) { m_version = version; }
    QString NewVersionInfoUrl() const { return m_newVersionInfoUrl; }
    int compositionType() const { return m_compositionType; }
    QString description() const { return m_description; }

    QJsonValue toJson() const override;

private:
    QString m_id;
    QString m_themeId;
    QString m_name;
    QString m_version;
    QString m_newVersionInfoUrl;
    int m_compositionType = 1;
    QString m_description;
};
Q_DECLARE_METATYPE(ClientThemeInfo)
