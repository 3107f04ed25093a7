#include "viewmodels/statistics/StatisticsViewModel.h"

#include "core/AppVariables.h"
#include "core/settings/ProfileFile.h"
#include "core/settings/StatisticsSettings.h"
#include "viewmodels/StoreProperty.h"
#include "viewmodels/statistics/FullName.h"

#include <QDebug>
#include <QRegularExpression>

#include <algorithm>
#include <utility>

namespace {

constexpr int longestRoom = 10;

} // namespace

StatisticsViewModel::StatisticsViewModel(QObject *parent)
    : StatisticsViewModel(AppVariables::buildProperty("ReferenceFolderLocation"), parent) {}

StatisticsViewModel::StatisticsViewModel(const QString &referenceFolder, QObject *parent)
    : QObject(parent), m_reference(referenceFolder), m_needShow(CheckNeedShow()) {
    using Self = StatisticsViewModel;
    m_workRoom.setValidator(&Self::ValidateWorkRoom);
    m_userFullName.setValidator(&FullName::Validate);
    connect(this, &Self::changed_SelectedRegionIndex, this, &Self::isRegionSelectedChanged);
    connect(this, &Self::changed_SelectedCityIndex, this, &Self::isCitySelectedChanged);
    for (const auto changed :
         {&Self::changed_SelectedRegionIndex, &Self::changed_SelectedCityIndex,
          &Self::changed_SelectedCompanyIndex, &Self::changed_SelectedProfessionIndex})
        connect(this, changed, this, &Self::isValidChanged);
    for (const ValidatableText *field : {&m_workRoom, &m_userFullName})
        connect(field, &ValidatableText::changed_IsValid, this, &Self::isValidChanged);
    if (m_needShow)
        Load();
}

bool StatisticsViewModel::CheckNeedShow() {
    if (!StatisticsSettings().FillOrganisationUserInfo)
        return false;
    const ProfileFile organisation = ProfileFile::organisation();
    const ProfileFile user = ProfileFile::userInfo();
    const QStringList needed{
        organisation.text("Organisation/RegionCode"),
        organisation.text("Organisation/RegionName"),
        organisation.text("Organisation/AreaName"),
        organisation.text("Organisation/OrganisationName"),
        organisation.text("Organisation/OrganisationFullName"),
        user.text("UserInfo/UserName"),
        user.text("UserInfo/Specialisation"),
    };
    return needed.contains(QString());
}

void StatisticsViewModel::Load() {
    if (!m_reference.Load()) {
        qWarning() << "Failed to load regions or organisations from file";
        m_loadError = tr("Не удалось загрузить справочники регионов, организаций и "
                         "специальностей. Обратитесь к системному администратору.");
        m_reference.clear();
        return;
    }
    for (const StatisticsRegion &region : m_reference.regions())
        m_regions << region.displayName();
    Restore();
    isValidChanged();
}

void StatisticsViewModel::Restore() {
    const ProfileFile user = ProfileFile::userInfo();
    // Checked at once, so that an empty one keeps the profile from being accepted.
    m_userFullName.set_Text(user.text("UserInfo/UserName"));
    set_SelectedProfessionIndex(get_Professions().indexOf(user.text("UserInfo/Specialisation")));

    const ProfileFile organisation = ProfileFile::organisation();
    const auto &regions = m_reference.regions();
    const auto region = regions.constFind(organisation.text("Organisation/RegionCode").toInt());
    if (region != regions.constEnd())
        set_SelectedRegionIndex(static_cast<int>(std::distance(regions.constBegin(), region)));
    set_SelectedCityIndex(m_cities.indexOf(organisation.text("Organisation/AreaName")));
    if (const StatisticsCity *city = selectedCity()) {
        const QString name = organisation.text("Organisation/OrganisationName");
        const QString fullName = organisation.text("Organisation/OrganisationFullName");
        const auto &all = city->organisations();
        const auto company = std::find_if(all.begin(), all.end(), [&](const auto &candidate) {
            return candidate.displayName() == name && candidate.fullName() == fullName;
        });
        if (company != all.end())
            set_SelectedCompanyIndex(static_cast<int>(std::distance(all.begin(), company)));
    }
    m_workRoom.SetText(organisation.text("Organisation/Room"));
}

int StatisticsViewModel::get_LogoHeight() const {
    return AppVariables::buildProperty("LogoHeight").toInt();
}

void StatisticsViewModel::set_SelectedRegionIndex(int v) {
    storeProperty(this, &m_regionIndex, v, &StatisticsViewModel::changed_SelectedRegionIndex);
}

void StatisticsViewModel::set_SelectedCityIndex(int v) {
    storeProperty(this, &m_cityIndex, v, &StatisticsViewModel::changed_SelectedCityIndex);
}

void StatisticsViewModel::set_SelectedCompanyIndex(int v) {
    storeProperty(this, &m_companyIndex, v, &StatisticsViewModel::changed_SelectedCompanyIndex);
}

void StatisticsViewModel::set_SelectedProfessionIndex(int v) {
    storeProperty(this, &m_professionIndex, v,
                  &StatisticsViewModel::changed_SelectedProfessionIndex);
}

void StatisticsViewModel::isRegionSelectedChanged() {
    // Before the list changes: a row of the former one means nothing in it.
    set_SelectedCityIndex(-1);
    set_SelectedCompanyIndex(-1);
    const StatisticsRegion *region = m_reference.regionAt(m_regionIndex);
    if (!region)
        return;
    QStringList names;
    for (const StatisticsCity &city : region->cities())
        names << city.name();
    if (names != m_cities) {
        m_cities = names;
        emit changed_Cities();
    }
}

void StatisticsViewModel::isCitySelectedChanged() {
    set_SelectedCompanyIndex(-1);
    const StatisticsCity *city = selectedCity();
    if (!city)
        return;
    QStringList names;
    for (const StatisticsOrganisation &organisation : city->organisations())
        names << organisation.displayName();
    if (names != m_companies) {
        m_companies = names;
        emit changed_Companies();
    }
}

const StatisticsCity *StatisticsViewModel::selectedCity() const {
    const StatisticsRegion *region = m_reference.regionAt(m_regionIndex);
    const int count = region ? static_cast<int>(region->cities().size()) : 0;
    return m_cityIndex >= 0 && m_cityIndex < count ? &region->cities()[std::size_t(m_cityIndex)]
                                                   : nullptr;
}

const StatisticsOrganisation *StatisticsViewModel::selectedCompany() const {
    const StatisticsCity *city = selectedCity();
    const int count = city ? static_cast<int>(city->organisations().size()) : 0;
    return m_companyIndex >= 0 && m_companyIndex < count
               ? &city->organisations()[std::size_t(m_companyIndex)]
               : nullptr;
}

void StatisticsViewModel::isValidChanged() {
    const bool isValid = get_IsRegionSelected() && get_IsCitySelected() &&
                         get_IsCompanySelected() && m_professionIndex >= 0 &&
                         m_workRoom.get_IsValid() && m_userFullName.get_IsValid();
    storeProperty(this, &m_isValid, isValid, &StatisticsViewModel::changed_IsValid);
}

void StatisticsViewModel::ValidateWorkRoom(ValidatableText::ValidationArgs *args) {
    static const QRegularExpression allowed(
        QRegularExpression::anchoredPattern(QStringLiteral("[^!\"№#$%^&*+=~`\"';:]+")));
    if (args->text.isEmpty())
        return;
    if (args->text.size() > longestRoom)
        args->error = tr("Название кабинета не может превышать 10 символов");
    else if (!allowed.match(args->text).hasMatch())
        args->error = tr("Недопустимые символы: ! \" № # $ % ^ & * + = ~ ' ; :");
}

void StatisticsViewModel::applyCommand() {
    if (!m_isValid)
        return;
    storeOrganisation();
    storeUser();
    m_needShow = false;
    release();
}

void StatisticsViewModel::storeOrganisation() const {
    const StatisticsRegion *region = m_reference.regionAt(m_regionIndex);
    const StatisticsCity *city = selectedCity();
    const StatisticsOrganisation *company = selectedCompany();
    if (!region || !city || !company)
        return;
    ProfileFile file = ProfileFile::organisation();
    file.setText("Organisation/RegionCode", QString::number(region->code()));
    file.setText("Organisation/RegionName", region->name());
    file.setText("Organisation/AreaName", company->hasAreaName() ? city->name() : region->name());
    file.setText("Organisation/OrganisationName", company->displayName());
    file.setText("Organisation/OrganisationFullName", company->fullName());
    file.setText("Organisation/OrganisationOid", company->oid());
    file.setText("Organisation/OrganisationPSRN", company->ogrn());
    file.setText("Organisation/Room", m_workRoom.get_Text());
    file.save();
}

void StatisticsViewModel::storeUser() const {
    ProfileFile file = ProfileFile::userInfo();
    file.setText("UserInfo/UserName", m_userFullName.get_Text());
    file.setText("UserInfo/Specialisation", get_Professions().value(m_professionIndex));
    file.save();
}

void StatisticsViewModel::release() {
    set_SelectedRegionIndex(-1);
    set_SelectedProfessionIndex(-1);
    m_regions.clear();
    m_cities.clear();
    m_companies.clear();
    emit changed_Regions();
    emit changed_Cities();
    emit changed_Companies();
    m_reference.clear();
    emit changed_Professions();
}
