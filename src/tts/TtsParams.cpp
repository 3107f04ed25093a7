#include "tts/TtsParams.h"

QJsonValue TtsParams::toJson() const {
    // The server's keys: this record spells the rate in lower case.
    return QJsonObject{
        {QStringLiteral("speed"), m_speed},
        {QStringLiteral("SelectedVoice"), m_selectedVoice.toJson()},
    };
}
