#pragma once

#include "viewmodels/statistics/StatisticsRegion.h"

#include <QMap>
#include <QStringList>

/// Regions with their settlements and organisations, and the specialties, from the reference files.
/// Main thread.
class ReferenceData {
public:
    /// @param folder  of "Regions.json", "Clinics.json" and "Specialisations.json"
    explicit ReferenceData(const QString &folder) : m_folder(folder) {}

    /// Reads the files anew.
    /// @return false if one of them has nothing to choose from; the reason is in the log
    bool Load();
    /// Gives the memory back.
    void clear();

    /// By code.
    const QMap<int, StatisticsRegion> &regions() const { return m_regions; }
    /// Null if there is none of this position.
    const StatisticsRegion *regionAt(int index) const;
    /// The names of the specialties, sorted without regard to case.
    QStringList professions() const { return m_professions; }

private:
    bool LoadRegions();
    bool LoadCitiesAndOrganisations();
    bool LoadProfessions();
    QString pathOf(const char *file) const;

    QString m_folder;
    QMap<int, StatisticsRegion> m_regions;
    QStringList m_professions;
};
