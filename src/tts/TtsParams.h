#pragma once

#include "tts/VoiceInfo.h"

/// The user's voice and speech rate, as the server is told of them.
class TtsParams : public JsonConvertable {
public:
    /// @param speed  1.0 is the normal rate
    TtsParams(double speed, const VoiceInfo &voice) : m_speed(speed), m_selectedVoice(voice) {}

    QJsonValue toJson() const override;

private:
    double m_speed;
    VoiceInfo m_selectedVoice;
};
