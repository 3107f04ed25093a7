#pragma once

#include "connection/messages/JsonConvertable.h"

#include <QJsonObject>
#include <QString>

/// A dictionary in the server's message of choices.
class ThemeInfo : public JsonConvertable {
public:
    ThemeInfo() = default;
    explicit ThemeInfo(const QJsonObject &object);

    QString id() const { return m_id; }
    QString themeId() const { return m_themeId; }
    QString name() const { return m_name; }
    QString themeVersion() const { return m_themeVersion; }
    QString updateConfigName() const { return m_updateConfigName; }
    QString newVersionInfoUrl() const { return m_newVersionInfoUrl; }

    /// @throws Exception  always: the record only ever arrives
    QJsonValue toJson() const override;

private:
    QString m_id;
    QString m_themeId;
    QString m_name;
    QString m_themeVersion;
    QString m_updateConfigName;
    QString m_newVersionInfoUrl;
};
