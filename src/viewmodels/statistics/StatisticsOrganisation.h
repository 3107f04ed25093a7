#pragma once

#include <QJsonObject>
#include <QString>

/// A medical organisation of the reference data. A value type.
class StatisticsOrganisation {
public:
    explicit StatisticsOrganisation(const QJsonObject &data);

    /// Not deleted, and with everything that a record must have.
    bool isValid() const { return m_isValid; }
    int regionId() const { return m_regionId; }
    int organizationType() const { return m_organizationType; }
    /// The name for display: the short one if there is one.
    QString displayName() const { return m_nameShort.isEmpty() ? m_nameFull : m_nameShort; }
    /// The full name, or the short one if there is no other.
    QString fullName() const { return m_nameFull.isEmpty() ? m_nameShort : m_nameFull; }
    /// The state's registration number.
    QString ogrn() const { return m_ogrn; }
    QString oid() const { return m_oid; }
    /// The settlement; empty for an organisation of the region as a whole.
    QString areaName() const { return m_areaName; }
    bool hasAreaName() const { return !m_areaName.isEmpty(); }
    /// Lets this one share the text of the same settlement's name.
    void shareAreaName(const QString &areaName) { m_areaName = areaName; }

private:
    int m_regionId = 0;
    int m_organizationType = 0;
    QString m_nameShort;
    QString m_nameFull;
    QString m_ogrn;
    QString m_oid;
    QString m_areaName;
    bool m_isValid;
};
