#include "commands/CommandInfo.h"

CommandInfo::CommandInfo(const QString &id, const QString &pattern, CommandType type)
    : m_id(id), m_pattern(pattern), m_type(type) {}

CommandInfo::CommandInfo(const QJsonObject &object)
    : m_id(object[QLatin1String("Id")].toString()),
      m_pattern(object[QLatin1String("Pattern")].toString()),
      m_type(static_cast<CommandType>(object[QLatin1String("Type")].toInt())) {}

QJsonValue CommandInfo::toJson() const {
    return QJsonObject{
        {QStringLiteral("Id"), m_id},
        {QStringLiteral("Pattern"), m_pattern},
        {QStringLiteral("Type"), static_cast<int>(m_type)},
    };
}
