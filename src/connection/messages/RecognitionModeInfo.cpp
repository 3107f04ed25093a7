#include "connection/messages/RecognitionModeInfo.h"

RecognitionModeInfo::RecognitionModeInfo(const QJsonObject &object)
    : m_mode(static_cast<RecognitionMode>(object[QLatin1String("Mode")].toInt())),
      m_state(static_cast<AsrState>(object[QLatin1String("State")].toInt())),
      m_info(object[QLatin1String("Info")].toString()) {}

QJsonValue RecognitionModeInfo::toJson() const {
    return QJsonObject{
        {QStringLiteral("Mode"), static_cast<int>(m_mode)},
        {QStringLiteral("State"), static_cast<int>(m_state)},
        {QStringLiteral("Info"), m_info},
    };
}
