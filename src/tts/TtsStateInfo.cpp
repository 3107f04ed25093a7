#include "tts/TtsStateInfo.h"

#include "core/Exception.h"

#include <QJsonArray>

TtsStateInfo::TtsStateInfo(const QJsonObject &object)
    : m_state(object[QLatin1String("State")].toInt(1)),
      m_selectedVoice(object[QLatin1String("SelectedVoice")].toObject()),
      m_speed(object[QLatin1String("Speed")].toDouble()) {
    const QJsonArray voices = object[QLatin1String("VoiceList")].toArray();
    for (const QJsonValue &voice : voices)
        m_voiceList.append(VoiceInfo(voice.toObject()));
}

QJsonValue TtsStateInfo::toJson() const {
    throw Exception(QStringLiteral("Not Implemented"));
}
