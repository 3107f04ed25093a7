#pragma once

#include <QJsonObject>
#include <QJsonValue>
#include <QString>

/// A medical specialty of the reference data. A value type.
class StatisticsProfession {
public:
    explicit StatisticsProfession(const QJsonObject &data)
        : m_name(data[QStringLiteral("NAME")].toString()),
          m_parent(data[QStringLiteral("PARENT")].toString()),
          m_isValid(data[QStringLiteral("ID")].isDouble() && !m_name.isEmpty() &&
                    data[QStringLiteral("PARENT")].isString()) {}

    bool isValid() const { return m_isValid; }
    QString name() const { return m_name; }
    /// Not a branch of another specialty.
    bool isTopLevel() const { return m_parent == QLatin1String("0"); }

private:
    QString m_name;
    QString m_parent;
    bool m_isValid;
};
