#include "recognition/AsrManager.h"

#include "connection/DataMessageProcessor.h"
#include "connection/WebSocketClient.h"
#include "connection/messages/MessageType.h"
#include "connection/messages/RecognitionModeCommand.h"
#include "connection/messages/RecognitionParameters.h"
#include "core/settings/ASRSettings.h"

#include <QDebug>
#include <QJsonDocument>
#include <QMetaEnum>
#include <QMutexLocker>

#include <algorithm>

AsrManager::AsrManager(WebSocketClient *client) : m_client(client) {
    qRegisterMetaType<RecognitionMode>("RecognitionMode");
    qRegisterMetaType<AsrState>("AsrState");
    const auto modes = QMetaEnum::fromType<RecognitionMode>();
    for (int i = 0; i < modes.keyCount(); ++i)
        m_modeStates.insert(static_cast<RecognitionMode>(modes.value(i)), AsrState::Stopped);
    connect(client->messageProcessor(), &DataMessageProcessor::modeChanged, this,
            &AsrManager::updateModeStateInfo);
}

void AsrManager::send(int messageType, const JsonConvertable &record) {
    sendValue(messageType, record.toJson());
}

void AsrManager::sendValue(int messageType, const QJsonValue &value) {
    // Before the connection is ready the server is not to hear of recognition: what is wanted then
    // is remembered and goes out with the opening messages.
    if (isConnected())
        m_client->sendJson(messageType, value);
}

void AsrManager::startRecognitionMode(std::optional<RecognitionMode> mode, bool remember) {
    const RecognitionMode current = m_targetModeInfo.mode().value_or(RecognitionMode::Off);
    const RecognitionMode requested = mode.value_or(RecognitionMode::Text);
    // The user hears the end of dictation at once, without waiting for the server.
    if (requested != current)
        updateModeStateInfo(RecognitionModeInfo(current, AsrState::Stopping));
    if (remember) {
        m_targetModeInfo.BackupTargetMode(requested, std::nullopt, std::nullopt,
                                          getSelectedTheme().id());
    }
    send(MessageType::StartMode, RecognitionModeCommand(mode));
}

void AsrManager::endStopping() {
    const QMap<RecognitionMode, AsrState> states = m_modeStates;
    for (auto entry = states.cbegin(); entry != states.cend(); ++entry) {
        if (entry.value() == AsrState::Stopping)
            updateModeStateInfo(RecognitionModeInfo(entry.key(), AsrState::Stopped));
    }
}

void AsrManager::startRecognition() {
    if (isConnected()) {
        startRecognitionMode(std::nullopt, true);
        return;
    }
    // Most states tell no reason, and before the first attempt there is no state.
    QString error = m_lastError.isEmpty() ? tr("Не удалось подключиться к серверу") : m_lastError;
    emit errorNotification(error);
}

void AsrManager::startUninteractiveMode() {
    startRecognitionMode(
        m_isVoiceActivationEnabled ? RecognitionMode::VoiceActivation : RecognitionMode::Off, true);
}

void AsrManager::stopRecognition() {
    startUninteractiveMode();
}

void AsrManager::changeRecognition() {
    const auto mode = m_targetModeInfo.mode();
    if (mode && *mode >= RecognitionMode::Text)
        stopRecognition();
    else
        startRecognition();
}

void AsrManager::updateModeStateInfo(const RecognitionModeInfo &modeInfo) {
    const RecognitionMode mode = modeInfo.mode();
    const AsrState state = modeInfo.state();
    if (!storeModeState(mode, state))
        return;
    qInfo().noquote().nospace()
        << "Mode changed: "
        << QJsonDocument(modeInfo.toJson().toObject()).toJson(QJsonDocument::Compact);
    emit currentModeOrStateChanged(mode, state);
    // After the signal, whose receivers compare with the mode that was started before.
    if (state == AsrState::Started)
        m_lastStartedMode = mode;
}

bool AsrManager::storeModeState(RecognitionMode mode, AsrState state) {
    const QMutexLocker locker(&m_stateMutex);
    const auto known = m_modeStates.find(mode);
    if (known == m_modeStates.end() || *known == state)
        return false;
    *known = state;
    return true;
}

void AsrManager::resetModes() {
    m_targetModeInfo.ResetTargetMode();
    const auto modes = QMetaEnum::fromType<RecognitionMode>();
    for (int i = 0; i < modes.keyCount(); ++i) {
        updateModeStateInfo(
            RecognitionModeInfo(static_cast<RecognitionMode>(modes.value(i)), AsrState::Stopped));
    }
}

void AsrManager::startTargetMode() {
    std::optional<FormMetadata> form;
    std::optional<QString> element;
    const auto mode = m_targetModeInfo.getTargetModeInfo(&form, &element);
    if (!mode)
        return;
    if (*mode >= RecognitionMode::TemplatedForm) {
        startTargetForm(form, element);
        return;
    }
    // A resumed dictation keeps the window that it was started for.
    unsigned long window = 0;
    m_targetModeInfo.GetTargetHandles(&window);
    startRecognitionMode(mode, true);
    m_targetModeInfo.UpdateTargetHandles(window);
}

void AsrManager::startTargetForm(const std::optional<FormMetadata> &form,
                                 const std::optional<QString> &element) {
    // The server stays silent while the form is described.
    TtsMute();
    if (form)
        send(MessageType::FormDescription, *form);
    if (element)
        sendValue(MessageType::FormElement, *element);
    TtsUnmute();
}

void AsrManager::TtsMute() {
    sendValue(MessageType::TtsMute, QJsonValue());
}

void AsrManager::TtsUnmute() {
    sendValue(MessageType::TtsUnmute, QJsonValue());
}

ClientThemeInfo AsrManager::getSelectedTheme() const {
    const QMutexLocker locker(&m_selectedThemeMutex);
    return m_selectedTheme;
}

QList<ClientThemeInfo> AsrManager::get_Themes(bool refresh) {
    QMutexLocker locker(&m_themesMutex);
    if (!m_themes.isEmpty() && !refresh)
        return m_themes;
    m_themes = m_restAccessPoint.getThemes();
    const QList<ClientThemeInfo> themes = m_themes;
    std::optional<ClientThemeInfo> found;
    const bool isFound = m_targetModeInfo.FindTargetTheme(themes, &found);
    locker.unlock();
    if (isFound)
        updateSelectedThemeInfo(found ? found->id() : ASRSettings().SelectedTheme.get());
    return themes;
}

void AsrManager::updateSelectedThemeInfo(const QString &themeId) {
    {
        const QMutexLocker locker(&m_themesMutex);
        const auto theme =
            std::find_if(m_themes.cbegin(), m_themes.cend(),
                         [&themeId](const ClientThemeInfo &info) { return info.id() == themeId; });
        if (theme != m_themes.cend()) {
            const QMutexLocker selectedLocker(&m_selectedThemeMutex);
            m_selectedTheme = *theme;
        }
    }
    // Without the lock: receivers come back for the state, whose mutex goes before this one.
    emit selectedThemeChanged();
}

void AsrManager::applySelectedTheme(bool stopFirst) {
    if (stopFirst)
        stopRecognition();
    updateSelectedThemeInfo(ASRSettings().SelectedTheme);
    const ClientThemeInfo theme = getSelectedTheme();
    if (!theme.id().isEmpty())
        send(MessageType::SelectTheme, theme);
}

void AsrManager::selectedTheme() {
    applySelectedTheme(true);
}

void AsrManager::applyRecognitionSettings() {
    const ASRSettings settings;
    send(MessageType::SetParameters,
         RecognitionParameters(settings.SendingMode, settings.UsePunctuation));
}

AsrState AsrManager::currentState() const {
    const QMutexLocker locker(&m_stateMutex);
    const RecognitionMode mode = m_targetModeInfo.mode().value_or(RecognitionMode::Off);
    return m_modeStates.value(mode, AsrState::Stopped);
}

bool AsrManager::isConnected() const {
    const QMutexLocker locker(&m_stateMutex);
    // This thread may not have heard yet that the connection is gone and another one opens.
    return m_connected && m_connectionNumber == m_client->connectionNumber();
}

bool AsrManager::isOpen() const {
    const QMutexLocker locker(&m_stateMutex);
    return isConnected() && !m_isOpening;
}

void AsrManager::publishTargetState(AsrState state, const QString &info) {
    const RecognitionMode mode = m_targetModeInfo.mode().value_or(RecognitionMode::Off);
    updateModeStateInfo(RecognitionModeInfo(mode, state, info));
}

void AsrManager::setConnected(const ConnectionStateInfo &stateInfo) {
    const QMutexLocker locker(&m_stateMutex);
    m_connected = m_isOpening = stateInfo.is(ConnectionState::Ready);
    if (m_connected)
        m_connectionNumber = stateInfo.connectionNumber();
}

void AsrManager::openConnection() {
    if (!isConnected())
        return;
    m_lastError.clear();
    applyRecognitionSettings();
    applySelectedTheme(false);
    emit connected();
    startTargetMode();
    const QMutexLocker locker(&m_stateMutex);
    m_isOpening = false;
}

void AsrManager::connectionStateChanged(const ConnectionStateInfo &stateInfo) {
    setConnected(stateInfo);
    endStopping();
    if (stateInfo.is(ConnectionState::Ready)) {
        openConnection();
        return;
    }
    emit connectionLost();
    if (stateInfo.is(ConnectionState::Disconnected)) {
        setEnabled(true);
        publishTargetState(AsrState::Starting);
    } else if (stateInfo.is(ConnectionState::Failed)) {
        publishTargetState(AsrState::Stopped, QStringLiteral("On disconnected"));
    }
    m_lastError = stateInfo.message();
}
