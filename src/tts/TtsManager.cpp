#include "tts/TtsManager.h"

#include "connection/messages/MessageType.h"
#include "core/settings/TTSSettings.h"

#include <QJsonObject>
#include <QMutexLocker>

TtsParams TtsManager::readTtsParams() {
    const TTSSettings settings;
    VoiceInfo voice;
    voice.setName(settings.Voice);
    return TtsParams(settings.Speed, voice);
}

void TtsManager::sendParams() {
    emit sendTtsParams(MessageType::SetTtsParams, readTtsParams().toJson());
}

void TtsManager::onTtsSettingsChanged() {
    sendParams();
}

void TtsManager::onConnectionStateChanged(const ConnectionStateInfo &stateInfo) {
    if (stateInfo.is(ConnectionState::Ready))
        sendParams();
}

void TtsManager::reloadTtsState() {
    emit sendVoiceRequest(MessageType::RequestVoices, QJsonObject());
}

void TtsManager::onTtsStateReceived(const TtsStateInfo &ttsState) {
    {
        const QMutexLocker locker(&m_mutex);
        m_ttsState = ttsState;
    }
    emit stateChanged(ttsState);
}

void TtsManager::onSoundRecived(const QByteArray &data) {
    emit playSound(data);
}
