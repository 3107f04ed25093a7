#pragma once

#include "connection/messages/JsonConvertable.h"

#include <QJsonObject>
#include <QString>

/// What kind of command is announced; its number on the wire.
enum class CommandType {
    VoiceActivation = 1,
    VoiceDeactivation = 2,
    User = 3,
};

/// What the server is told of one executable command.
class CommandInfo : public JsonConvertable {
public:
    CommandInfo() = default;
    CommandInfo(const QString &id, const QString &pattern, CommandType type);
    explicit CommandInfo(const QJsonObject &object);

    QString id() const { return m_id; }
    void setId(const QString &id) { m_id = id; }
    QString pattern() const { return m_pattern; }
    void setPattern(const QString &pattern) { m_pattern = pattern; }
    CommandType type() const { return m_type; }
    void setType(CommandType type) { m_type = type; }

    QJsonValue toJson() const override;

private:
    QString m_id;
    QString m_pattern;
    CommandType m_type = CommandType::User;
};
