#pragma once

#include "viewmodels/statistics/StatisticsOrganisation.h"

#include <QString>

#include <vector>

/// A settlement of the reference data, with its organisations.
class StatisticsCity {
public:
    explicit StatisticsCity(const QString &name) : m_name(name), m_upperName(name.toUpper()) {}

    QString name() const { return m_name; }
    /// The name by which settlements are sorted.
    QString upperName() const { return m_upperName; }
    const std::vector<StatisticsOrganisation> &organisations() const { return m_organisations; }

    void append(const StatisticsOrganisation &organisation);
    /// By the display name, without regard to case.
    void sortOrganisations();

private:
    QString m_name;
    QString m_upperName;
    std::vector<StatisticsOrganisation> m_organisations;
};
