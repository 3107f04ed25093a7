#include "viewmodels/statistics/StatisticsRegion.h"

#include <QJsonValue>

#include <algorithm>

StatisticsRegion::StatisticsRegion(const QJsonObject &data)
    : m_code(data[QStringLiteral("ID")].toInt()),
      m_name(data[QStringLiteral("SUBJECT")].toString()),
      m_isValid(data[QStringLiteral("ID")].isDouble() && !m_name.isEmpty()) {}

QString StatisticsRegion::displayName() const {
    return QStringLiteral("[%1] %2").arg(m_code, 2, 10, QLatin1Char('0')).arg(m_name);
}

StatisticsCity *StatisticsRegion::GetCity(const QString &name) {
    const QString upperName = name.toUpper();
    auto place = std::lower_bound(m_cities.begin(), m_cities.end(), upperName,
                                  [](const StatisticsCity &city, const QString &wanted) {
                                      return city.upperName() < wanted;
                                  });
    for (; place != m_cities.end() && place->upperName() == upperName; ++place) {
        if (place->name() == name)
            return &*place;
    }
    return &*m_cities.insert(place, StatisticsCity(name));
}

void StatisticsRegion::sortOrganisations() {
    for (StatisticsCity &city : m_cities)
        city.sortOrganisations();
}
