#include "viewmodels/statistics/StatisticsCity.h"

#include <algorithm>
#include <utility>

void StatisticsCity::append(const StatisticsOrganisation &organisation) {
    m_organisations.push_back(organisation);
    if (organisation.hasAreaName())
        m_organisations.back().shareAreaName(m_name);
}

void StatisticsCity::sortOrganisations() {
    using Keyed = std::pair<QString, StatisticsOrganisation>;
    std::vector<Keyed> keyed;
    keyed.reserve(m_organisations.size());
    for (StatisticsOrganisation &organisation : m_organisations)
        keyed.emplace_back(organisation.displayName().toUpper(), std::move(organisation));
    std::stable_sort(keyed.begin(), keyed.end(), [](const Keyed &left, const Keyed &right) {
        return left.first < right.first;
    });
    m_organisations.clear();
    for (Keyed &entry : keyed)
        m_organisations.push_back(std::move(entry.second));
    m_organisations.shrink_to_fit();
}
