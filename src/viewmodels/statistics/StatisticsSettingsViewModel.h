#pragma once

#include "viewmodels/AppSettingsViewModel.h"

/// The page "Пользователь": the stored profile, to look at and to reset. Main thread.
class StatisticsSettingsViewModel : public AppSettingsViewModel {
    Q_OBJECT
    Q_PROPERTY(QString RegionCode MEMBER m_regionCode NOTIFY changed_Profile)
    Q_PROPERTY(QString RegionName MEMBER m_regionName NOTIFY changed_Profile)
    Q_PROPERTY(QString AreaName MEMBER m_areaName NOTIFY changed_Profile)
    Q_PROPERTY(QString OrganisationName MEMBER m_organisationName NOTIFY changed_Profile)
    Q_PROPERTY(QString OrganisationFullName MEMBER m_organisationFullName NOTIFY changed_Profile)
    Q_PROPERTY(QString OrganisationOID MEMBER m_organisationOID NOTIFY changed_Profile)
    Q_PROPERTY(QString OrganisationPSRN MEMBER m_organisationPSRN NOTIFY changed_Profile)
    Q_PROPERTY(QString Room MEMBER m_room NOTIFY changed_Profile)
    Q_PROPERTY(QString UserFullName MEMBER m_userFullName NOTIFY changed_Profile)
    Q_PROPERTY(QString UserSpecialisation MEMBER m_userSpecialisation NOTIFY changed_Profile)
    Q_PROPERTY(bool isRoomFiledVisible READ get_isRoomFiledVisible CONSTANT)

public:
    explicit StatisticsSettingsViewModel(QObject *parent = nullptr);

    void Load() override;

    /// Asks the user; forgets the profile and asks for a restart unless the answer is no.
    Q_INVOKABLE void resetCommand();

    bool get_isRoomFiledVisible() const { return m_isProfileAsked; }

signals:
    void changed_Profile();
    void needRestartApplication();

private:
    QString m_regionCode;
    QString m_regionName;
    QString m_areaName;
    QString m_organisationName;
    QString m_organisationFullName;
    QString m_organisationOID;
    QString m_organisationPSRN;
    QString m_room;
    QString m_userFullName;
    QString m_userSpecialisation;
    const bool m_isProfileAsked;
};
