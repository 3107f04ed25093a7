#include "viewmodels/statistics/StatisticsSettingsViewModel.h"

#include "core/settings/ProfileFile.h"
#include "core/settings/StatisticsSettings.h"

#include <QMessageBox>

StatisticsSettingsViewModel::StatisticsSettingsViewModel(QObject *parent)
    : AppSettingsViewModel(tr("Пользователь"), false, parent),
      m_isProfileAsked(StatisticsSettings().FillOrganisationUserInfo) {
    if (m_isProfileAsked)
        StatisticsSettingsViewModel::Load();
}

void StatisticsSettingsViewModel::Load() {
    AppSettingsViewModel::Load();
    const ProfileFile organisation = ProfileFile::organisation();
    m_regionCode = organisation.text("Organisation/RegionCode");
    m_regionName = organisation.text("Organisation/RegionName");
    m_areaName = organisation.text("Organisation/AreaName");
    m_organisationName = organisation.text("Organisation/OrganisationName");
    m_organisationFullName = organisation.text("Organisation/OrganisationFullName");
    m_organisationOID = organisation.text("Organisation/OrganisationOid");
    m_organisationPSRN = organisation.text("Organisation/OrganisationPSRN");
    m_room = organisation.text("Organisation/Room");
    const ProfileFile user = ProfileFile::userInfo();
    m_userFullName = user.text("UserInfo/UserName");
    m_userSpecialisation = user.text("UserInfo/Specialisation");
    emit changed_Profile();
}

void StatisticsSettingsViewModel::resetCommand() {
    const auto answer = QMessageBox::question(
        nullptr, tr("Сброс информации"),
        tr("Вы уверены, что хотите сбросить информацию о пользователе? Приложение будет "
           "перезагружено."),
        QMessageBox::Yes | QMessageBox::No, QMessageBox::No);
    // The end of the program takes the question away, and is no answer.
    if (answer != QMessageBox::Yes)
        return;
    ProfileFile organisation = ProfileFile::organisation();
    ProfileFile user = ProfileFile::userInfo();
    for (ProfileFile *file : {&organisation, &user}) {
        file->clear();
        file->save();
    }
    emit needRestartApplication();
}
