#include "tts/VoiceInfo.h"

VoiceInfo::VoiceInfo(const QJsonObject &object)
    : m_name(object[QLatin1String("Name")].toString()) {}

QJsonValue VoiceInfo::toJson() const {
    return QJsonObject{
        {QStringLiteral("Name"), m_name},
    };
}
