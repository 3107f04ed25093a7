#include "viewmodels/statistics/StatisticsOrganisation.h"

#include <QJsonValue>

StatisticsOrganisation::StatisticsOrganisation(const QJsonObject &data)
    : m_regionId(data[QStringLiteral("regionId")].toInt()),
      m_organizationType(data[QStringLiteral("organizationType")].toInt()),
      m_nameShort(data[QStringLiteral("nameShort")].toString()),
      m_nameFull(data[QStringLiteral("nameFull")].toString()),
      m_ogrn(data[QStringLiteral("ogrn")].toString()),
      m_oid(data[QStringLiteral("oid")].toString()),
      m_areaName(data[QStringLiteral("areaName")].toString()),
      m_isValid(!data[QStringLiteral("deleteDate")].isString() &&
                data[QStringLiteral("id")].isDouble() &&
                data[QStringLiteral("regionId")].isDouble() &&
                data[QStringLiteral("organizationType")].isDouble() && !displayName().isEmpty()) {}
