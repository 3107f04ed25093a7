#include "viewmodels/statistics/ReferenceData.h"

#include "viewmodels/statistics/ReferenceFile.h"
#include "viewmodels/statistics/StatisticsProfession.h"

#include <QDebug>
#include <QDir>

#include <algorithm>
#include <malloc.h>

namespace {

/// Hospitals and the like; others are pharmacies, offices and so on.
constexpr int medicalOrganisation = 1;

void logRejected(const char *what, int rejected, int all) {
    if (rejected > 0)
        qWarning().noquote().nospace() << "Invalid " << what << ": " << rejected << "/" << all;
}

bool isLessByUpperCase(const QString &left, const QString &right) {
    return left.toUpper() < right.toUpper();
}

} // namespace

QString ReferenceData::pathOf(const char *file) const {
    return QDir(m_folder).filePath(QString::fromLatin1(file));
}

bool ReferenceData::Load() {
    clear();
    const bool isWhole = LoadRegions() && LoadCitiesAndOrganisations() && LoadProfessions();
    for (StatisticsRegion &region : m_regions)
        region.sortOrganisations();
    // What the parsed files took, tens of megabytes, would stay with the process otherwise.
    malloc_trim(0);
    return isWhole;
}

void ReferenceData::clear() {
    m_regions.clear();
    m_professions.clear();
    malloc_trim(0);
}

const StatisticsRegion *ReferenceData::regionAt(int index) const {
    if (index < 0 || index >= m_regions.size())
        return nullptr;
    return &*std::next(m_regions.constBegin(), index);
}

bool ReferenceData::LoadRegions() {
    const QJsonArray records = ReferenceFile::LoadJsonArray(pathOf("Regions.json"));
    int rejected = 0;
    for (const QJsonValue &record : records) {
        const StatisticsRegion region(ReferenceFile::dataOf(record));
        if (region.isValid())
            m_regions.insert(region.code(), region);
        else
            ++rejected;
    }
    logRejected("regions", rejected, records.size());
    return !m_regions.isEmpty();
}

bool ReferenceData::LoadCitiesAndOrganisations() {
    const QJsonArray records = ReferenceFile::LoadJsonArray(pathOf("Clinics.json"));
    int rejected = 0;
    for (const QJsonValue &record : records) {
        const StatisticsOrganisation organisation(ReferenceFile::dataOf(record));
        const auto region = m_regions.find(organisation.regionId());
        if (!organisation.isValid() || organisation.organizationType() != medicalOrganisation ||
            region == m_regions.end()) {
            ++rejected;
            continue;
        }
        region->GetCity(organisation.hasAreaName() ? organisation.areaName() : region->name())
            ->append(organisation);
    }
    logRejected("organisations", rejected, records.size());
    return rejected < records.size();
}

bool ReferenceData::LoadProfessions() {
    const QJsonArray records = ReferenceFile::LoadJsonArray(pathOf("Specialisations.json"));
    for (const QJsonValue &record : records) {
        const StatisticsProfession profession(ReferenceFile::dataOf(record));
        if (profession.isValid() && profession.isTopLevel())
            m_professions << profession.name();
    }
    logRejected("professions", records.size() - m_professions.size(), records.size());
    std::stable_sort(m_professions.begin(), m_professions.end(), isLessByUpperCase);
    return !m_professions.isEmpty();
}
