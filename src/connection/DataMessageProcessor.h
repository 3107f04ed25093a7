#pragma once

#include "connection/messages/RecognitionModeInfo.h"
#include "connection/messages/TextResult.h"
#include "connection/messages/UserNotification.h"
#include "themes/ServerThemesInfo.h"
#include "tts/TtsStateInfo.h"

#include <QObject>

/// Turns incoming frames into typed signals. Lives on the socket's thread; what cannot be parsed
/// and what is of an unknown type is dropped without a message.
class DataMessageProcessor : public QObject {
    Q_OBJECT

public:
    explicit DataMessageProcessor(QObject *parent);

public slots:
    void onTextMessageReceived(const QString &message);
    /// Every binary frame from the server is speech.
    void onBinaryMessageReceived(const QByteArray &message);

signals:
    void modeChanged(RecognitionModeInfo info);
    void resultReceived(TextResult result);
    void userNotified(UserNotification notification);
    void themeChoicesReceived(ServerThemesInfo themes);
    void ttsStateReceived(TtsStateInfo state);
    void ttsSound(QByteArray message);
    /// The raw text of every text frame.
    void textMessageReceived(QString message);
};
