#pragma once

#include "viewmodels/statistics/StatisticsCity.h"

#include <QJsonObject>
#include <QString>

#include <vector>

/// A federal subject of the reference data, with its settlements.
class StatisticsRegion {
public:
    explicit StatisticsRegion(const QJsonObject &data);

    /// Has a code and a name.
    bool isValid() const { return m_isValid; }
    int code() const { return m_code; }
    QString name() const { return m_name; }
    /// The code as two digits at least, and the name.
    QString displayName() const;

    /// In the order of their names, without regard to case.
    const std::vector<StatisticsCity> &cities() const { return m_cities; }
    /// Finds the settlement of exactly this name, or adds it. Valid until the next call.
    StatisticsCity *GetCity(const QString &name);
    void sortOrganisations();

private:
    int m_code;
    QString m_name;
    bool m_isValid;
    std::vector<StatisticsCity> m_cities;
};
