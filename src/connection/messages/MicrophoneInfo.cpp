#include "connection/messages/MicrophoneInfo.h"

QJsonValue MicrophoneInfo::toJson() const {
    return QJsonObject{
        {QStringLiteral("MicHwId"), m_micHwId},
        {QStringLiteral("MicDisplayName"), m_micDisplayName},
        {QStringLiteral("MicLevel"), m_micLevel},
    };
}
