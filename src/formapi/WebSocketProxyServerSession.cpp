#include "formapi/WebSocketProxyServerSession.h"

#include "connection/DataMessageProcessor.h"
#include "connection/WebSocketClient.h"
#include "connection/messages/MessageTypeMapper.h"
#include "core/settings/LaunchSettings.h"
#include "formapi/ElementInfo.h"
#include "recognition/AsrManager.h"
#include "recognition/ResultManager.h"
#include "themes/ClientThemeInfo.h"

#include <QDebug>
#include <QJsonArray>
#include <QJsonDocument>
#include <QNetworkCookie>
#include <QNetworkRequest>
#include <QWebSocket>

namespace {

/// What a form sends.
enum FormCode {
    FocusedElement = 5,
    FormDescribed = 6,
    FormEnded = 7,
    ThemeChosen = 9,
    SettingsChanged = 10,
    CommandsChanged = 14,
    Connected = 15,
    Disconnected = 16,
};

/// What a form gets.
enum ServerCode {
    Guarded = 0,
    ValuedElement = 1,
    ElementFocused = 2,
    ValuedElements = 6,
    RecognizedText = 9,
};

/// Neither a form that reads no more nor one that says more than the server takes is to fill the
/// memory.
constexpr qint64 maximumFormBacklogBytes = 16LL * 1024 * 1024;
constexpr qint64 maximumServerBacklogBytes = 64LL * 1024 * 1024;

struct Envelope {
    int type = 0;
    QJsonValue data;
};

Envelope parse(const QString &message) {
    const QJsonObject object = QJsonDocument::fromJson(message.toUtf8()).object();
    return {object[QLatin1String("MessageType")].toInt(), object[QLatin1String("Data")]};
}

} // namespace

WebSocketProxyServerSession::WebSocketProxyServerSession(QWebSocket *socket,
                                                         WebSocketClient *client,
                                                         ResultManager *resultManager,
                                                         AsrManager *asrManager, QObject *parent)
    : WebSocketServerSession(socket, parent),
      m_client(client),
      m_resultManager(resultManager),
      m_asrManager(asrManager) {
    connect(client->messageProcessor(), &DataMessageProcessor::textMessageReceived, this,
            &WebSocketProxyServerSession::proxyTextMessageReceived);
    connect(this, &WebSocketConnection::disconnected, this,
            &WebSocketProxyServerSession::onDisconnected);
    takeIdentity();
    m_client->sendJson(MessageTypeMapper::toAsr(Connected), m_misInfo.toJson());
}

void WebSocketProxyServerSession::takeIdentity() {
    // One by one: Qt gives up a whole header for one cookie that is not well formed.
    const QList<QByteArray> cookies = socket()->request().rawHeader("Cookie").split(';');
    QList<QNetworkCookie> identity;
    for (const QByteArray &cookie : cookies) {
        const int sign = cookie.indexOf('=');
        if (sign < 0)
            continue;
        const QByteArray name = cookie.left(sign).trimmed().toUpper();
        const QByteArray bytes = cookie.mid(sign + 1).trimmed();
        const QString value = QString::fromUtf8(bytes);
        if (name == "MIS_TYPE")
            m_misInfo.setTypeId(value);
        else if (name == "MIS_VERSION")
            m_misInfo.setVersion(value);
        else if (name == "MIS_USER")
            m_misInfo.setUser(value);
        else
            continue;
        identity.append(QNetworkCookie(name, bytes));
    }
    m_client->getCookiesSource()->setAdditionalCookies(identity);
}

void WebSocketProxyServerSession::onDisconnected() {
    // What the server says from now on is not for this form, which is deleted a little later.
    disconnect(m_client->messageProcessor(), nullptr, this, nullptr);
    m_client->getCookiesSource()->setAdditionalCookies({});
    m_client->sendJson(MessageTypeMapper::toAsr(Disconnected), QJsonValue());
}

void WebSocketProxyServerSession::textMessageReceived(const QString &message) {
    if (m_client->backlogBytes() > maximumServerBacklogBytes) {
        qWarning() << "The form says more than the server takes and is disconnected";
        socket()->abort();
        return;
    }
    const Envelope envelope = parse(message);
    const int serverType = MessageTypeMapper::toAsr(envelope.type);
    const QJsonValue data = updateTarget(envelope.type, envelope.data);
    if (serverType >= 0)
        m_client->sendJson(serverType, data);
}

QJsonValue WebSocketProxyServerSession::updateTarget(int code, const QJsonValue &data) {
    TargetModeInfo *target = m_asrManager->getTargetModeInfo();
    switch (code) {
    case FocusedElement:
        target->BackupTargetElement(data.toString());
        break;
    case FormDescribed:
        startForm(data.toObject());
        break;
    case FormEnded:
        return endForm();
    case ThemeChosen:
        target->UpdateTargetTheme(ClientThemeInfo(data.toObject()).id());
        break;
    case SettingsChanged:
        target->UpdateTargetFormSettings(data.toObject());
        break;
    case CommandsChanged:
        target->UpdateTargetCommandSet(data.toArray());
        break;
    default:
        break;
    }
    return data;
}

void WebSocketProxyServerSession::startForm(const QJsonObject &description) {
    const FormMetadata form(description);
    m_asrManager->getTargetModeInfo()->BackupTargetMode(
        form.mode() != 0 ? RecognitionMode::TemplatedWizardForm : RecognitionMode::TemplatedForm,
        form, std::nullopt, m_asrManager->getSelectedTheme().id());
}

QJsonValue WebSocketProxyServerSession::endForm() {
    TargetModeInfo *target = m_asrManager->getTargetModeInfo();
    const bool listens = LaunchSettings().VoiceActivationEnabled;
    const RecognitionMode mode = listens ? RecognitionMode::VoiceActivation : RecognitionMode::Off;
    if (listens) {
        target->BackupTargetMode(mode, std::nullopt, std::nullopt,
                                 m_asrManager->getSelectedTheme().id());
    } else {
        target->ResetTargetMode();
    }
    // The server so learns which mode to return to.
    return static_cast<int>(mode);
}

void WebSocketProxyServerSession::proxyTextMessageReceived(const QString &message) {
    // What was on its way already when the form went.
    if (hasEnded())
        return;
    const Envelope envelope = parse(message);
    const int code = MessageTypeMapper::toServerMessage(envelope.type);
    if (code < 0 || (code == Guarded && !m_asrManager->getEnabled()))
        return;
    sendJson(code, translateData(code, envelope.data));
    limitBacklog();
}

QJsonValue WebSocketProxyServerSession::translateData(int code, const QJsonValue &data) {
    switch (code) {
    case ValuedElement: {
        QJsonObject element = data.toObject();
        processValuedElement(element);
        return element;
    }
    case ElementFocused:
        m_asrManager->getTargetModeInfo()->BackupTargetElement(ElementInfo(data.toObject()).key());
        return data;
    case ValuedElements: {
        QJsonArray groups;
        const QJsonArray given = data.toArray();
        for (const QJsonValue &group : given) {
            QJsonArray elements;
            const QJsonArray givenElements = group.toArray();
            for (const QJsonValue &one : givenElements) {
                QJsonObject element = one.toObject();
                processValuedElement(element);
                elements.append(element);
            }
            groups.append(elements);
        }
        return groups;
    }
    case RecognizedText:
        return m_resultManager->formatTextResult(data.toString(), false);
    default:
        return data;
    }
}

void WebSocketProxyServerSession::processValuedElement(QJsonObject &object) {
    // Only these two types of elements hold dictated text.
    const int type = object[QLatin1String("Type")].toInt();
    if (type != 0 && type != 7)
        return;
    object[QLatin1String("Value")] =
        m_resultManager->formatTextResult(object[QLatin1String("Value")].toString(), true);
}

void WebSocketProxyServerSession::limitBacklog() {
    if (backlogBytes() <= maximumFormBacklogBytes)
        return;
    qWarning() << "The form does not read what it is sent and is disconnected";
    socket()->abort();
}
