#include "connection/DataMessageProcessor.h"

#include "connection/messages/MessageType.h"

#include <QJsonDocument>
#include <QJsonObject>

DataMessageProcessor::DataMessageProcessor(QObject *parent) : QObject(parent) {
    qRegisterMetaType<RecognitionModeInfo>("RecognitionModeInfo");
    qRegisterMetaType<TextResult>("TextResult");
    qRegisterMetaType<UserNotification>("UserNotification");
    qRegisterMetaType<ServerThemesInfo>("ServerThemesInfo");
    qRegisterMetaType<TtsStateInfo>("TtsStateInfo");
}

void DataMessageProcessor::onTextMessageReceived(const QString &message) {
    const QJsonObject envelope = QJsonDocument::fromJson(message.toUtf8()).object();
    const QJsonObject data = envelope[QLatin1String("Data")].toObject();
    switch (envelope[QLatin1String("MessageType")].toInt(0)) {
    case MessageType::ModeState:
        emit modeChanged(RecognitionModeInfo(data));
        break;
    case MessageType::Result:
        emit resultReceived(TextResult(data));
        break;
    case MessageType::Notification:
        emit userNotified(UserNotification(data));
        break;
    case MessageType::ThemeChoices:
        emit themeChoicesReceived(ServerThemesInfo(data));
        break;
    case MessageType::TtsState:
        emit ttsStateReceived(TtsStateInfo(data));
        break;
    default:
        break;
    }
}

void DataMessageProcessor::onBinaryMessageReceived(const QByteArray &message) {
    emit ttsSound(message);
}
