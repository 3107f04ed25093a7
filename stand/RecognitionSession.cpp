#include "stand/RecognitionSession.h"

#include "connection/messages/MessageType.h"
#include "connection/messages/RecognitionModeCommand.h"
#include "connection/messages/RecognitionModeInfo.h"
#include "stand/EventLog.h"
#include "stand/RecognitionEngine.h"
#include "themes/ClientThemeInfo.h"
#include "tts/VoiceInfo.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QNetworkRequest>
#include <QTcpSocket>
#include <QTimer>
#include <QWebSocket>

namespace {

/// Numbers of the form family that only forms and servers speak.
enum FormMessage : int {
    FormClosed = 107,
    FormTheme = 109,
    FormState = 200,
    FormValue = 201,
    FormFocus = 202,
    FormText = 209,
};

constexpr int kTextElement = 0;
constexpr int kWarning = 2;
constexpr int kCritical = 3;
constexpr quint64 kMaxIncomingBytes = 16 * 1024 * 1024;

const QString kCommandId = QStringLiteral("CommandId");
const QString kData = QStringLiteral("Data");
const QString kKey = QStringLiteral("Key");
const QString kMessageType = QStringLiteral("MessageType");
const QString kSpeed = QStringLiteral("speed");
const QString kText = QStringLiteral("Text");

int nextNumber() {
    static int last = 0;
    return ++last;
}

bool listens(RecognitionMode mode) {
    return mode != RecognitionMode::Off;
}

/// Spoken words carry neither case nor marks, a pattern as it was typed may.
QString spoken(const QString &phrase) {
    QString words;
    for (const QChar character : phrase.toLower())
        words += character.isLetterOrNumber() ? character : QLatin1Char(' ');
    return words.simplified();
}

/// The recogniser hears the noise around a phrase as words of a letter or two.
QString withoutStrayWords(const QString &phrase) {
    QStringList words = phrase.split(QLatin1Char(' '));
    while (words.size() > 1 && words.first().size() <= 2)
        words.removeFirst();
    while (words.size() > 1 && words.last().size() <= 2)
        words.removeLast();
    return words.join(QLatin1Char(' '));
}

QJsonArray wordsOf(const QString &text) {
    QJsonArray words;
    for (const QString &word : text.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        words.append(QJsonObject{{QStringLiteral("Index"), words.size()},
                                 {QStringLiteral("ProbabilityNorm"), 1.0},
                                 {kText, word}});
    }
    return words;
}

QJsonObject notification(const QString &message, int type) {
    return QJsonObject{{QStringLiteral("Message"), message},
                       {QStringLiteral("Type"), type},
                       {QStringLiteral("Action"), 0}};
}

} // namespace

RecognitionSession::RecognitionSession(QWebSocket *socket, QTcpSocket *transport,
                                       const Services &services, QObject *parent)
    : QObject(parent),
      m_socket(socket),
      m_transport(transport),
      m_services(services),
      m_number(nextNumber()),
      m_engine(services.makeEngine()) {
    m_socket->setParent(this);
    m_socket->setMaxAllowedIncomingMessageSize(kMaxIncomingBytes);
    connectSocket();
    connectEngine();
    connect(&m_speech, &SpeechSource::sound, this, &RecognitionSession::sendBinary);

    QJsonObject headers;
    const QNetworkRequest request = m_socket->request();
    for (const QByteArray &name : request.rawHeaderList()) {
        headers.insert(QString::fromLatin1(name.toLower()),
                       QString::fromLatin1(request.rawHeader(name)));
    }
    logEvent(QStringLiteral("connected"), {{QStringLiteral("headers"), headers}});
}

RecognitionSession::~RecognitionSession() {
    // The socket is a child and would report its end to a half-destroyed session.
    m_socket->disconnect(this);
}

void RecognitionSession::connectSocket() {
    connect(m_socket, &QWebSocket::textMessageReceived, this, &RecognitionSession::onText);
    connect(m_socket, &QWebSocket::binaryMessageReceived, this, &RecognitionSession::onSound);
    connect(m_socket, &QWebSocket::disconnected, this, [this] {
        logEvent(QStringLiteral("disconnected"),
                 {{QStringLiteral("closeCode"), m_socket->closeCode()}});
        deleteLater();
    });
}

void RecognitionSession::connectEngine() {
    connect(m_engine.get(), &RecognitionEngine::partialText, this, &RecognitionSession::onPartial);
    connect(m_engine.get(), &RecognitionEngine::finalText, this, &RecognitionSession::onFinal);
    connect(m_engine.get(), &RecognitionEngine::finished, this, &RecognitionSession::leaveMode);
    connect(m_engine.get(), &RecognitionEngine::failed, this, [this](const QString &reason) {
        logEvent(QStringLiteral("failed"), {{QStringLiteral("text"), reason}});
        answer(
            MessageType::Notification,
            notification(QStringLiteral("Демонстрационный распознаватель не работает"), kCritical));
    });
}

void RecognitionSession::sendText(const QString &text) {
    m_socket->sendTextMessage(text);
}

void RecognitionSession::sendBinary(const QByteArray &bytes) {
    m_socket->sendBinaryMessage(bytes);
}

void RecognitionSession::sendRaw(const QByteArray &bytes) {
    if (m_transport)
        m_transport->write(bytes);
}

void RecognitionSession::sendMessage(int type, const QJsonValue &data) {
    const QJsonObject envelope{{kMessageType, type}, {kData, data}};
    sendText(QString::fromUtf8(QJsonDocument(envelope).toJson(QJsonDocument::Compact)));
}

void RecognitionSession::speak(const QString &text) {
    m_speech.speak(text, m_voice, m_speed);
}

void RecognitionSession::drop() {
    m_socket->abort();
}

void RecognitionSession::close() {
    m_socket->close();
}

void RecognitionSession::ignoreIncoming() {
    // The socket answers pings by itself, so it must not come to see them.
    if (m_transport)
        QObject::disconnect(m_transport, &QTcpSocket::readyRead, nullptr, nullptr);
}

void RecognitionSession::onText(const QString &message) {
    const QJsonObject envelope = QJsonDocument::fromJson(message.toUtf8()).object();
    const int type = envelope[kMessageType].toInt();
    logEvent(QStringLiteral("message"), {{QStringLiteral("type"), type},
                                         {QStringLiteral("data"), envelope[kData]},
                                         {QStringLiteral("text"), message}});
    if (type > 100)
        handleForm(type, envelope[kData]);
    else
        handle(type, envelope[kData]);
}

void RecognitionSession::onSound(const QByteArray &sound) {
    m_soundBytes += sound.size();
    logEvent(QStringLiteral("sound"),
             {{QStringLiteral("frame"), sound.size()}, {QStringLiteral("bytes"), m_soundBytes}});
    if (m_mode && listens(*m_mode) && !m_leaving)
        m_engine->feed(sound);
}

void RecognitionSession::handle(int type, const QJsonValue &data) {
    const QJsonObject object = data.toObject();
    switch (type) {
    case MessageType::StartMode:
        enter(RecognitionModeCommand(object).type().value_or(RecognitionMode::Text));
        break;
    case MessageType::SelectTheme:
        selectTheme(ClientThemeInfo(object).id());
        break;
    case MessageType::SetCommands:
        m_commands = CommandsInfo(object).commands();
        break;
    case MessageType::SetParameters:
        m_engine->setPunctuation(object[QLatin1String("UsePunctuation")].toBool());
        break;
    case MessageType::RequestVoices:
        sendVoices();
        break;
    case MessageType::SetTtsParams:
        m_speed = object[kSpeed].toDouble(1.0);
        m_voice = VoiceInfo(object[QLatin1String("SelectedVoice")].toObject()).name();
        break;
    default: // the personal words among them: the small model takes no new words
        break;
    }
}

void RecognitionSession::handleForm(int type, const QJsonValue &data) {
    switch (type) {
    case MessageType::FormDescription: {
        const FormMetadata form(data.toObject());
        m_form.open(form);
        enter(form.mode() == 0 ? RecognitionMode::TemplatedForm
                               : RecognitionMode::TemplatedWizardForm);
        break;
    }
    case MessageType::FormElement:
        m_form.focus(data.toString());
        answer(FormFocus, QJsonObject{{kKey, m_form.focused()}});
        break;
    case FormClosed:
        enter(static_cast<RecognitionMode>(data.toInt()));
        break;
    case FormTheme:
        selectTheme(ClientThemeInfo(data.toObject()).id());
        break;
    case MessageType::TtsMute:
        m_muted = true;
        m_speech.stop();
        break;
    case MessageType::TtsUnmute:
        m_muted = false;
        break;
    default: // of the other form messages the stand knows no more than that they
             // arrived
        break;
    }
}

void RecognitionSession::selectTheme(const QString &id) {
    answer(MessageType::ThemeChoices,
           QJsonObject{{QStringLiteral("ThemeInfos"), m_services.themes()}});
    for (const QJsonValue &theme : m_services.themes()) {
        if (ClientThemeInfo(theme.toObject()).id() == id)
            return;
    }
    answer(MessageType::Notification,
           notification(QStringLiteral("Словарь «%1» не найден на сервере").arg(id), kWarning));
}

void RecognitionSession::sendVoices() {
    const QStringList names = SpeechSource::voices();
    QJsonArray voices;
    for (const QString &name : names)
        voices.append(QJsonObject{{QStringLiteral("Name"), name}});
    const bool isKnown = names.contains(m_voice);
    answer(MessageType::TtsState,
           QJsonObject{{QStringLiteral("State"), SpeechSource::isAvailable() ? 0 : 1},
                       {QStringLiteral("VoiceList"), voices},
                       {QStringLiteral("SelectedVoice"),
                        QJsonObject{{QStringLiteral("Name"), isKnown ? m_voice : names.first()}}},
                       {QStringLiteral("Speed"), m_speed}});
}

void RecognitionSession::enter(RecognitionMode mode) {
    if (mode < RecognitionMode::Off || mode > RecognitionMode::TemplatedWizardForm)
        return;
    m_wantedMode = mode;
    // While the engine still ends the old mode, the last wish decides what comes
    // after it.
    if (m_leaving)
        return;
    if (m_mode == mode) {
        answerState(mode, AsrState::Started);
        return;
    }
    if (!m_mode) {
        beginMode();
        return;
    }
    m_leaving = true;
    answerState(*m_mode, AsrState::Stopping);
    if (listens(*m_mode))
        m_engine->finish();
    else
        leaveMode();
}

void RecognitionSession::leaveMode() {
    m_leaving = false;
    answerState(*m_mode, AsrState::Stopped);
    beginMode();
}

void RecognitionSession::beginMode() {
    m_mode = m_wantedMode;
    answerState(*m_mode, AsrState::Starting);
    if (listens(*m_mode))
        m_engine->start();
    answerState(*m_mode, AsrState::Started);
    if (inForm())
        answer(FormState, QJsonObject{{QStringLiteral("Mode"), mode()}});
}

bool RecognitionSession::inForm() const {
    return m_mode && *m_mode >= RecognitionMode::TemplatedForm;
}

void RecognitionSession::onPartial(const QString &text) {
    if (m_mode == RecognitionMode::Text)
        answerResult(text, false, QString());
}

void RecognitionSession::onFinal(const QString &text) {
    const QString commandId = commandFor(text);
    if (!commandId.isEmpty() || m_mode == RecognitionMode::Text)
        answerResult(text, true, commandId);
    else if (inForm())
        onFormText(text);
}

void RecognitionSession::onFormText(const QString &text) {
    if (m_form.follow(withoutStrayWords(spoken(text)))) {
        answer(FormFocus, QJsonObject{{kKey, m_form.focused()}});
        if (m_mode == RecognitionMode::TemplatedWizardForm && !m_muted)
            speak(QStringLiteral("Поле %1").arg(m_form.focused()));
    } else if (m_form.focused().isEmpty()) {
        answer(FormText, text);
    } else {
        answer(FormValue, QJsonObject{{kKey, m_form.focused()},
                                      {QStringLiteral("Type"), kTextElement},
                                      {QStringLiteral("Value"), text}});
    }
}

QString RecognitionSession::commandFor(const QString &text) const {
    const QString phrase = spoken(text);
    const QString bare = withoutStrayWords(phrase);
    for (const CommandInfo &command : m_commands) {
        const QString pattern = spoken(command.pattern());
        if (!pattern.isEmpty() && (pattern == phrase || pattern == bare))
            return command.id();
    }
    return QString();
}

void RecognitionSession::answer(int type, const QJsonValue &data) {
    if (!m_services.answers->enabled)
        return;
    if (m_services.answers->lateMs <= 0) {
        sendMessage(type, data);
        return;
    }
    // A coarse timer could let a later answer overtake.
    QTimer::singleShot(m_services.answers->lateMs, Qt::PreciseTimer, this,
                       [this, type, data] { sendMessage(type, data); });
}

void RecognitionSession::answerState(RecognitionMode mode, AsrState state) {
    answer(MessageType::ModeState, RecognitionModeInfo(mode, state).toJson());
}

void RecognitionSession::answerResult(const QString &text, bool isFinal, const QString &commandId) {
    answer(MessageType::Result, QJsonObject{{kText, text},
                                            {QStringLiteral("IsFinal"), isFinal},
                                            {kCommandId, commandId},
                                            {QStringLiteral("Words"), wordsOf(text)}});
    logEvent(QStringLiteral("result"),
             {{QStringLiteral("text"), text}, {QStringLiteral("final"), isFinal}});
}

void RecognitionSession::logEvent(const QString &event, QJsonObject fields) {
    fields.insert(QStringLiteral("session"), m_number);
    fields.insert(QStringLiteral("port"), m_socket->localPort());
    m_services.log->add(event, fields);
}
