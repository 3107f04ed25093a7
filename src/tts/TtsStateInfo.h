#pragma once

#include "tts/VoiceInfo.h"

#include <QList>
#include <QMetaType>

/// The state of the server's speech synthesis.
class TtsStateInfo : public JsonConvertable {
public:
    TtsStateInfo() = default;
    explicit TtsStateInfo(const QJsonObject &object);

    /// 0: ready; 1: could not be initialised.
    int state() const { return m_state; }
    QList<VoiceInfo> voiceList() const { return m_voiceList; }
    VoiceInfo selectedVoice() const { return m_selectedVoice; }
    double speed() const { return m_speed; }

    /// @throws Exception  always: the record only ever arrives
    QJsonValue toJson() const override;

private:
    int m_state = 1;
    QList<VoiceInfo> m_voiceList;
    VoiceInfo m_selectedVoice;
    double m_speed = 0.0;
};
Q_DECLARE_METATYPE(TtsStateInfo)
