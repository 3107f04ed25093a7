#pragma once

#include "commands/CommandsInfo.h"
#include "recognition/RecognitionMode.h"
#include "stand/FormWalk.h"
#include "stand/SpeechSource.h"

#include <QJsonValue>
#include <QObject>
#include <QPointer>

#include <functional>
#include <memory>
#include <optional>

class EventLog;
class QTcpSocket;
class QWebSocket;
class RecognitionEngine;

/// One client on the WebSocket: the server's side of the messages, of the modes and of forms.
/// Deletes itself with the end of the connection.
class RecognitionSession : public QObject {
    Q_OBJECT

public:
    /// How the client's messages are answered; shared by the sessions of a port.
    struct Answers {
        bool enabled = true;
        int lateMs = 0;
    };

    /// What a session takes from the stand; all of it outlives the session.
    struct Services {
        EventLog *log;
        std::function<std::unique_ptr<RecognitionEngine>()> makeEngine;
        std::function<QJsonArray()> themes;
        const Answers *answers;
    };

    /// @param socket     becomes a child of this object
    /// @param transport  the connection beneath the socket, which owns it
    RecognitionSession(QWebSocket *socket, QTcpSocket *transport, const Services &services,
                       QObject *parent);
    ~RecognitionSession() override;

    void sendText(const QString &text);
    void sendBinary(const QByteArray &bytes);
    /// Writes bytes beneath the framing: for frames that no proper server would send.
    void sendRaw(const QByteArray &bytes);
    /// Sends a message whatever the answers are set to.
    void sendMessage(int type, const QJsonValue &data);
    void speak(const QString &text);
    /// Sound received on this connection, in bytes.
    qint64 soundBytes() const { return m_soundBytes; }
    int mode() const { return m_mode ? static_cast<int>(*m_mode) : -1; }

    /// Breaks the connection without a farewell.
    void drop();
    void close();
    /// Reads nothing any more, so that pings are not answered either. Sending still works.
    void ignoreIncoming();

private:
    void connectSocket();
    void connectEngine();
    void onText(const QString &message);
    void onSound(const QByteArray &sound);
    void handle(int type, const QJsonValue &data);
    void handleForm(int type, const QJsonValue &data);
    void selectTheme(const QString &id);
    void sendVoices();

    void enter(RecognitionMode mode);
    void leaveMode();
    void beginMode();
    bool inForm() const;

    void onPartial(const QString &text);
    void onFinal(const QString &text);
    void onFormText(const QString &text);
    QString commandFor(const QString &text) const;

    void answer(int type, const QJsonValue &data);
    void answerState(RecognitionMode mode, AsrState state);
    void answerResult(const QString &text, bool isFinal, const QString &commandId);
    void logEvent(const QString &event, QJsonObject fields = {});

    QWebSocket *m_socket;
    QPointer<QTcpSocket> m_transport;
    const Services m_services;
    const int m_number;
    std::unique_ptr<RecognitionEngine> m_engine;
    SpeechSource m_speech;
    QString m_voice;
    double m_speed = 1.0;
    bool m_muted = false;
    QList<CommandInfo> m_commands;
    FormWalk m_form;
    std::optional<RecognitionMode> m_mode;
    RecognitionMode m_wantedMode = RecognitionMode::Off;
    bool m_leaving = false;
    qint64 m_soundBytes = 0;
};
