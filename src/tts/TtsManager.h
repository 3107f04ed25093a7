#pragma once

#include "connection/ConnectionStateInfo.h"
#include "tts/TtsParams.h"
#include "tts/TtsStateInfo.h"

#include <QJsonValue>
#include <QMutex>
#include <QObject>

/// Tells the server the user's voice and speech rate, asks for its voices, and hands on the speech
/// that it sends. The server speaks on its own account.
///
/// Lives on the main thread; onConnectionStateChanged() and readTtsParams() may be called from any
/// thread.
class TtsManager : public QObject {
    Q_OBJECT

public:
    explicit TtsManager(QObject *parent = nullptr) : QObject(parent) {}

    /// Asks the server for its voices; the answer comes as stateChanged().
    void reloadTtsState();
    static TtsParams readTtsParams();

public slots:
    void onTtsSettingsChanged();
    void onTtsStateReceived(const TtsStateInfo &ttsState);
    void onSoundRecived(const QByteArray &data);
    void onConnectionStateChanged(const ConnectionStateInfo &stateInfo);

signals:
    void playSound(QByteArray data);
    void sendTtsParams(int messageType, QJsonValue ttsParams);
    void sendVoiceRequest(int messageType, QJsonValue request);
    void stateChanged(TtsStateInfo ttsState);

private:
    void sendParams();

    QMutex m_mutex;
    TtsStateInfo m_ttsState;
};
