#pragma once

#include "connection/messages/MicrophoneInfo.h"

#include <QString>

/// A feedback message: what the user writes, and the facts around it.
class ClientClaim : public JsonConvertable {
public:
    ClientClaim() = default;

    QString themeName() const { return m_themeName; }
    void setThemeName(const QString &themeName) { m_themeName = themeName; }
    QString email() const { return m_email; }
    void setEmail(const QString &email) { m_email = email; }
    QString regionCode() const { return m_regionCode; }
    void setRegionCode(const QString &regionCode) { m_regionCode = regionCode; }
    QString organisationFullName() const { return m_organisationFullName; }
    void setOrganisationFullName(const QString &organisationFullName) {
        m_organisationFullName = organisationFullName;
    }
    QString organisationFullOgrn() const { return m_organisationFullOgrn; }
    void setOrganisationFullOgrn(const QString &organisationFullOgrn) {
        m_organisationFullOgrn = organisationFullOgrn;
    }
    QString organisationFullOid() const { return m_organisationFullOid; }
    void setOrganisationFullOid(const QString &organisationFullOid) {
        m_organisationFullOid = organisationFullOid;
    }
    QString room() const { return m_room; }
    void setRoom(const QString &room) { m_room = room; }
    QString operatingSystem() const { return m_operatingSystem; }
    void setOperatingSystem(const QString &operatingSystem) { m_operatingSystem = operatingSystem; }
    QString themeVersion() const { return m_themeVersion; }
    void setThemeVersion(const QString &themeVersion) { m_themeVersion = themeVersion; }
    QString clientId() const { return m_clientId; }
    void setClientId(const QString &clientId) { m_clientId = clientId; }
    QString hostName() const { return m_hostName; }
    void setHostName(const QString &hostName) { m_hostName = hostName; }
    QString account() const { return m_account; }
    void setAccount(const QString &account) { m_account = account; }
    QString userName() const { return m_userName; }
    void setUserName(const QString &userName) { m_userName = userName; }
    QString description() const { return m_description; }
    void setDescription(const QString &description) { m_description = description; }
    MicrophoneInfo microphoneInfo() const { return m_microphoneInfo; }
    void setMicrophoneInfo(const MicrophoneInfo &microphoneInfo) {
        m_microphoneInfo = microphoneInfo;
    }

    /// Every key is there, empty or not.
    QJsonValue toJson() const override;

private:
    QString m_themeName;
    QString m_email;
    QString m_regionCode;
    QString m_organisationFullName;
    QString m_organisationFullOgrn;
    QString m_organisationFullOid;
    QString m_room;
    QString m_operatingSystem;
    QString m_themeVersion;
    QString m_clientId;
    QString m_hostName;
    QString m_account;
    QString m_userName;
    QString m_description;
    MicrophoneInfo m_microphoneInfo;
};
