#include "core/WindowsManager.h"

#include "audio/PlaybackDeviceManager.h"
#include "audio/PulseAudioManager.h"
#include "audio/RecordingDeviceManager.h"
#include "commands/AutoReplaceManager.h"
#include "commands/LaunchManager.h"
#include "commands/UserCommandsManager.h"
#include "connection/ConnectionHeartbeat.h"
#include "connection/ConnectionManager.h"
#include "connection/DataMessageProcessor.h"
#include "connection/WebSocketClient.h"
#include "connection/WebSocketWorker.h"
#include "connection/rest/Method.h"
#include "core/DialogTranslator.h"
#include "core/Enum.h"
#include "core/GraphicsBackend.h"
#include "core/Logger.h"
#include "core/ProcessEnd.h"
#include "core/QuitSignals.h"
#include "core/RunGuard.h"
#include "core/SessionNotices.h"
#include "core/StartProblem.h"
#include "core/settings/ASRSettings.h"
#include "core/settings/FormApiSettings.h"
#include "core/settings/HotkeySettings.h"
#include "core/settings/SelfTestSettings.h"
#include "core/settings/StatisticsSettings.h"
#include "core/workers/SubService.h"
#include "desktop/DesktopSession.h"
#include "desktop/HotKeyManager.h"
#include "desktop/Hotkey.h"
#include "desktop/NativeGeometry.h"
#include "desktop/SystemTray.h"
#include "desktop/TextWriter.h"
#include "desktop/XDisplay.h"
#include "diagnostics/SelfTest.h"
#include "diagnostics/SelfTestViewModel.h"
#include "formapi/RestProxyServer.h"
#include "formapi/WebSocketProxyServer.h"
#include "recognition/AsrManager.h"
#include "recognition/ResultManager.h"
#include "tts/TtsManager.h"
#include "viewmodels/MonitorViewModel.h"
#include "viewmodels/QmlTypes.h"
#include "viewmodels/SettingsContainerViewModel.h"
#include "viewmodels/commands/CommandsViewModel.h"
#include "viewmodels/feedback/AvocadoViewModel.h"
#include "viewmodels/feedback/FeedbackViewModel.h"
#include "viewmodels/settings/AboutSettingsViewModel.h"
#include "viewmodels/settings/AudioDeviceSettingsViewModel.h"
#include "viewmodels/settings/LaunchSettingsViewModel.h"
#include "viewmodels/settings/NetworkSettingsViewModel.h"
#include "viewmodels/settings/RecognitionSettingsViewModel.h"
#include "viewmodels/settings/SynthesisSettingsViewModel.h"
#include "viewmodels/statistics/StatisticsSettingsViewModel.h"
#include "viewmodels/statistics/StatisticsViewModel.h"

#include <QApplication>
#include <QDebug>
#include <QFont>
#include <QIcon>
#include <QMessageBox>
#include <QMutexLocker>
#include <QProcess>
#include <QQmlApplicationEngine>
#include <QQmlContext>
#include <QScopeGuard>
#include <QScreen>
#include <QSessionManager>
#include <QWindow>

using namespace std::chrono_literals;

namespace {

constexpr int lastWordsMs = 1000;

/// The name that the user knows a stored gesture by; an unknown one counts as the first, as it does
/// for the hot keys themselves.
template <typename T>
QString displayName(const QString &invariantName) {
    try {
        return Enum<T>::ToString(Enum<T>::FromInvariantString(invariantName));
    } catch (const ConveterException &) {
        return Enum<T>::ToString(T{});
    }
}

QSystemTrayIcon::MessageIcon messageIcon(NotificationType type) {
    switch (type) {
    case NotificationType::Information:
        return QSystemTrayIcon::Information;
    case NotificationType::Warning:
        return QSystemTrayIcon::Warning;
    case NotificationType::Critical:
        return QSystemTrayIcon::Critical;
    }
    return QSystemTrayIcon::NoIcon;
}

} // namespace

WindowsManager::WindowsManager(QObject *parent) : QObject(parent) {
    registerQmlTypes();
    qRegisterMetaType<RecognitionModeInfo>("RecognitionModeInfo");
    qRegisterMetaType<TtsStateInfo>("TtsStateInfo");
    qRegisterMetaType<UserNotification>("UserNotification");
    qRegisterMetaType<ServerThemesInfo>("ServerThemesInfo");
    qRegisterMetaType<TextResult>("TextResult");
    qRegisterMetaType<AsrState>("AsrState");
    qRegisterMetaType<ConnectionStateInfo>("ConnectionStateInfo");
    qRegisterMetaType<Method>("Method");
    qRegisterMetaType<ParameterDictionary>("ParameterDictionary");
}

WindowsManager::~WindowsManager() = default;

int WindowsManager::start(int argc, char **argv) {
    try {
        return runApplication(argc, argv);
    } catch (const std::exception &error) {
        qCritical() << "Application exception at startup: ";
        qCritical().noquote() << error.what();
        qCritical() << "Startup failed";
        TextWriter::Cleanup();
        return -1;
    }
}

int WindowsManager::runApplication(int argc, char **argv) {
    // Before the application object, so that every widget starts with it.
    QApplication::setFont(QFont(m_fontFamily));
    const GraphicsBackend graphics;
    const DesktopSession session(argc, argv);
    if (!session.problem().isEmpty()) {
        StartProblem::tellConsole(session.problem());
        return StartProblem::Status;
    }
    QApplication application(argc, argv);
    graphics.leaveEnvironment();
    session.leaveEnvironment();
    endWithServer();
    const QuitSignals quitSignals(nullptr);
    connect(&quitSignals, &QuitSignals::quitRequested, this, [this] {
        // Without a tray nothing but a message can be on the screen.
        if (m_tray)
            closeApplication();
        else
            QCoreApplication::quit();
    });
    InitLogger(argc, argv);
    if (m_mainWindow)
        return -1;
    DialogTranslator dialogs;
    QCoreApplication::installTranslator(&dialogs);
    QApplication::setWindowIcon(QIcon(m_iconPath));
    QApplication::setQuitOnLastWindowClosed(false);
    leaveSessionToItsManager();
    const QString closedFolder = StartProblem::ofFolders();
    if (!closedFolder.isEmpty())
        return StartProblem::tell(closedFolder);
    QQmlApplicationEngine engine;

    RunGuard guard(QStringLiteral("Vellumar_Qt"));
    if (!guard.tryToRun()) {
        if (!guard.failure().isEmpty()) {
            return StartProblem::tell(
                tr("Не удалось проверить, не запущена ли программа: %1. Обратитесь "
                   "к системному администратору.")
                    .arg(guard.failure()));
        }
        QMessageBox::critical(nullptr, tr("Ошибка"), tr("Приложение уже запущено"),
                              QMessageBox::Ok);
        return -1;
    }
    m_runGuard = &guard;
    disablePunctuationWhereUnavailable();

    UserCommandsManager userCommands;
    AutoReplaceManager autoReplace;
    PulseAudioManager pulseAudio(nullptr);
    m_recordingDevice = pulseAudio.RecordingDevice();
    m_playbackDevice = pulseAudio.PlaybackDevice();
    m_hotKeyManager = HotKeyManager::getHotkeyManager();
    const auto unwind = qScopeGuard([&] { takeDown(&pulseAudio); });
    connect(&userCommands, &UserCommandsManager::CommandExecutionError, this,
            &WindowsManager::OnCommandError);
    connectHotKeys();
    createTray(&engine);
    m_notices = std::make_unique<SessionNotices>(session, m_tray.get());
    connect(m_notices.get(), &SessionNotices::notifyUser, this,
            &WindowsManager::processUserNotification);
    connect(
        &userCommands, &UserCommandsManager::CommandFileKept, this, [this](const QString &message) {
            showTrayMessage(UserNotification(NotificationType::Warning, tr("Автозамена"), message));
        });
    NetworkSettingsViewModel network;
    RecognitionSettingsViewModel recognition;
    createWebSocketWorker(&autoReplace, &recognition, &userCommands);
    connect(m_recordingDevice, &RecordingDeviceManager::SelectedIndexChanged, this,
            &WindowsManager::onSelectedMicrophoneChanged);
    pulseAudio.Start();
    createConnectionManager(&engine, &network, m_recordingDevice);
    createHeartbeat();
    AudioDeviceSettingsViewModel audio(m_recordingDevice, m_playbackDevice);
    AboutSettingsViewModel about;
    LaunchSettingsViewModel launch;
    SynthesisSettingsViewModel synthesis;
    connectLaunchSettings(&launch);
    StatisticsSettingsViewModel statistics;
    m_statisticsEnabled = StatisticsSettings().FillOrganisationUserInfo;
    QList<AppSettingsViewModel *> pages{&audio,     &launch,  &recognition,
                                        &synthesis, &network, &about};
    if (m_statisticsEnabled) {
        pages << &statistics;
        connect(&statistics, &StatisticsSettingsViewModel::needRestartApplication, this,
                &WindowsManager::restartApplication);
    }
    SettingsContainerViewModel settings(pages, m_connectionManager);
    CommandsViewModel commands;
    engine.rootContext()->setContextProperty(QStringLiteral("settingsViewModel"), &settings);
    engine.rootContext()->setContextProperty(QStringLiteral("recognitionSettingsViewModel"),
                                             &recognition);
    engine.rootContext()->setContextProperty(QStringLiteral("commandsViewModel"), &commands);
    createRestProxy(&engine);
    createUserViewModels(&engine);
    loadCommands(&userCommands);
    commands.set_UserCommandsManager(&userCommands);
    commands.set_CommandTypes(userCommands.get_CommandTypes());
    autoReplace.set_Managers(m_webSocketWorker->asrManager(), &userCommands);
    MonitorViewModel monitor(m_webSocketWorker->asrManager(), m_webSocketWorker->resultManager(),
                             m_recordingDevice, m_connectionManager);
    engine.rootContext()->setContextProperty(QStringLiteral("asrManager"),
                                             m_webSocketWorker->asrManager());
    engine.rootContext()->setContextProperty(QStringLiteral("monitorViewModel"), &monitor);
    connectRecognition();
    connect(&network, &NetworkSettingsViewModel::ApplyNetworkSettings, this,
            &WindowsManager::applyNetworkSettings);
    connect(m_connectionManager, &ConnectionManager::stateChanged, m_restProxy.get(),
            &RestProxyServer::onWsConnectionState);
    connect(&commands, &CommandsViewModel::commandsChanged, m_webSocketWorker->asrManager(),
            &AsrManager::stopRecognition);
    createTtsManager(m_playbackDevice, &synthesis);
    if (SelfTestSettings().Enabled)
        createSelfTest(&engine);
    engine.rootContext()->setContextProperty(QStringLiteral("windowsManager"), this);
    followPrimaryScreen();
    m_exitStatus = runInterface(&engine);
    // Before the view models of this function go.
    stopDevices(&pulseAudio);
    return m_exitStatus;
}

void WindowsManager::takeDown(PulseAudioManager *pulseAudio) {
    stopSubServices();
    m_hotKeyManager->keyboardHookUnreg();
    stopDevices(pulseAudio);
    m_selfTest.reset();
    m_selfTestViewModel.reset();
    m_feedbackViewModel.reset();
    m_avocadoViewModel.reset();
    m_statisticsViewModel.reset();
    m_heartbeatService = nullptr;
    while (!m_subServices.empty())
        m_subServices.pop_back();
    m_notices.reset();
    m_tray.reset();
    m_runGuard = nullptr;
    // The application waits for a look-up that its thread has begun, however long that takes.
    endProcessWithin(2s, m_exitStatus);
}

void WindowsManager::stopDevices(PulseAudioManager *pulseAudio) {
    // Devices may come and go to the very end.
    m_recordingDevice->disconnect(this);
    pulseAudio->Stop();
    m_restProxy.reset();
}

int WindowsManager::runInterface(QQmlApplicationEngine *engine) {
    QList<QQmlError> errors;
    const auto collecting = connect(engine, &QQmlEngine::warnings, this,
                                    [&](const QList<QQmlError> &found) { errors += found; });
    engine->load(m_mainQml);
    disconnect(collecting);
    if (engine->rootObjects().isEmpty())
        return StartProblem::tell(StartProblem::ofInterface(errors));
    m_mainWindow = qobject_cast<QWindow *>(engine->rootObjects().constLast());
    TextWriter::Init();
    const int result = QApplication::exec();
    // The workers' last signals: what was said last is still to be typed.
    stopSubServices();
    QCoreApplication::sendPostedEvents();
    // A window may have closed over its text, which is then told to this thread.
    TextWriter::WaitForTyped(lastWordsMs);
    QCoreApplication::sendPostedEvents();
    TextWriter::Cleanup();
    // The views go before the view models that they show. The pointer stays: it tells that this
    // object has run, and is read for nothing else.
    qDeleteAll(engine->rootObjects());
    return result;
}

void WindowsManager::leaveSessionToItsManager() {
    // Qt would ask each window to close; the monitor's refuses, and with it the whole session.
    QGuiApplication::setFallbackSessionManagementEnabled(false);
    // The session starts the program by its own entry, so it is not to be brought back beside that.
    const auto neverRestart = [](QSessionManager &manager) {
        manager.setRestartHint(QSessionManager::RestartNever);
    };
    connect(qGuiApp, &QGuiApplication::commitDataRequest, this, neverRestart);
    connect(qGuiApp, &QGuiApplication::saveStateRequest, this, neverRestart);
}

void WindowsManager::disablePunctuationWhereUnavailable() {
    ASRSettings settings;
    if (!settings.PunctuationEnabled && settings.UsePunctuation) {
        settings.UsePunctuation = false;
        settings.sync();
    }
}

void WindowsManager::connectHotKeys() {
    connect(m_hotKeyManager, &HotKeyManager::activated, this, &WindowsManager::onHotkeyActivated);
    connect(m_hotKeyManager, &HotKeyManager::activationModeChanged, this,
            &WindowsManager::onHotkeyChanged);
}

void WindowsManager::createTray(QQmlApplicationEngine *engine) {
    m_tray = std::make_unique<SystemTray>(nullptr);
    engine->rootContext()->setContextProperty(QStringLiteral("systemTray"), m_tray.get());
}

void WindowsManager::loadCommands(UserCommandsManager *userCommands) {
    AsrManager *asrManager = m_webSocketWorker->asrManager();
    userCommands->set_AsrManager(asrManager);
    connect(asrManager, &AsrManager::selectedThemeChanged, userCommands,
            &UserCommandsManager::updateCommands);
    try {
        userCommands->LoadAll();
    } catch (const std::exception &error) {
        QMessageBox::critical(nullptr, tr("Ошибка"),
                              tr("Не удалось загрузить команды и автозамены. Исправьте файл и "
                                 "запустите приложение снова.") +
                                  QStringLiteral("\n\n") + QString::fromUtf8(error.what()),
                              QMessageBox::Ok);
        throw;
    }
}

void WindowsManager::createWebSocketWorker(AutoReplaceManager *autoReplace,
                                           RecognitionSettingsViewModel *recognition,
                                           UserCommandsManager *userCommands) {
    m_webSocketWorker = new WebSocketWorker(autoReplace, userCommands);
    m_subServices.push_back(std::make_unique<SubService>(m_webSocketWorker, true));
    connect(m_webSocketWorker->wsClient()->messageProcessor(), &DataMessageProcessor::userNotified,
            this, &WindowsManager::processUserNotification);
    connect(m_webSocketWorker->webSocketServer(), &WebSocketProxyServer::notifyUser, this,
            &WindowsManager::processUserNotification);
    connect(m_webSocketWorker->webSocketServer(), &WebSocketServer::listenFailed, m_notices.get(),
            [this](int port) { m_notices->tellTakenPort(port, QStringLiteral("Port")); });
    AsrManager *asrManager = m_webSocketWorker->asrManager();
    connect(recognition, &RecognitionSettingsViewModel::recognitionSettingsChanged, asrManager,
            &AsrManager::applyRecognitionSettings);
    connect(recognition, &RecognitionSettingsViewModel::recognitionSettingsChanged, autoReplace,
            &AutoReplaceManager::OnRecognitionSettingsChanged);
    connect(recognition, &RecognitionSettingsViewModel::selectedThemeChanged, asrManager,
            &AsrManager::selectedTheme);
    connect(recognition, &RecognitionSettingsViewModel::canEditAvocadoChanged, m_tray.get(),
            &SystemTray::onRecognitionParametersChanged);
    recognition->get_ThemeChooseViewModel()->set_AsrManager(asrManager);
}

void WindowsManager::connectLaunchSettings(LaunchSettingsViewModel *launch) {
    connect(m_connectionManager, &ConnectionManager::vacStateChanged, launch,
            &LaunchSettingsViewModel::VACSettingsVisibleChanged, Qt::DirectConnection);
    connect(launch, &LaunchSettingsViewModel::vacSettingsVisibleChanged, this,
            &WindowsManager::onVACSettingsVisibleChanged);
    connect(launch, &LaunchSettingsViewModel::activationChanged, m_webSocketWorker->asrManager(),
            &AsrManager::stopRecognition);
    connect(launch, &LaunchSettingsViewModel::activationChanged, m_webSocketWorker->launchManager(),
            &LaunchManager::updateSettings);
    connect(launch, &LaunchSettingsViewModel::hotKeysChanged, m_hotKeyManager,
            &HotKeyManager::onSettingsChanged);
}

void WindowsManager::applyNetworkSettings(bool bASR_changed, bool bFormAPI_changed) {
    if (bASR_changed)
        emit needReconnect();
    if (bFormAPI_changed) {
        WebSocketServer *server = m_webSocketWorker->webSocketServer();
        emit server->stop();
        emit server->start(FormApiSettings().Port);
    }
}

void WindowsManager::createConnectionManager(QQmlApplicationEngine *engine,
                                             NetworkSettingsViewModel *network,
                                             RecordingDeviceManager *recordingDevice) {
    m_connectionManager = new ConnectionManager(m_webSocketWorker->wsClient(),
                                                m_webSocketWorker->asrManager(), recordingDevice);
    m_subServices.push_back(std::make_unique<SubService>(m_connectionManager, true));
    SubService *service = m_subServices.back().get();

    connect(this, &WindowsManager::needReconnect, m_connectionManager,
            &ConnectionManager::onNetworkSettingsChanged);
    connect(this, &WindowsManager::needReconnect, service, &SubService::Start);
    connect(m_connectionManager, &ConnectionManager::stateChanged, network,
            &NetworkSettingsViewModel::onConnectionStateChanged, Qt::QueuedConnection);
    connect(m_connectionManager, &ConnectionManager::disconnected, this,
            &WindowsManager::wsDisconnected, Qt::QueuedConnection);
    connect(this, &WindowsManager::restartConnection, service, &SubService::Start,
            Qt::QueuedConnection);
    connect(m_connectionManager, &ConnectionManager::themeCheckRequested, this,
            &WindowsManager::themeCheckRequested, Qt::QueuedConnection);
    connect(m_connectionManager, &ConnectionManager::stateChanged, this,
            &WindowsManager::onConnectionStateChanged, Qt::QueuedConnection);
    connect(this, &WindowsManager::themeCheckSuccess, m_connectionManager,
            &ConnectionManager::onThemeCheckSuccess, Qt::QueuedConnection);
    connect(m_connectionManager, &ConnectionManager::stateChanged, m_tray.get(),
            &SystemTray::onConnectionStateChanged, Qt::QueuedConnection);
    engine->rootContext()->setContextProperty(QStringLiteral("connectionManager"),
                                              m_connectionManager);
}

void WindowsManager::createHeartbeat() {
    m_heartbeat = new ConnectionHeartbeat(m_webSocketWorker->wsClient());
    connect(m_heartbeat, &ConnectionHeartbeat::timeout, m_connectionManager,
            &ConnectionManager::onLinkDead);
    m_subServices.push_back(std::make_unique<SubService>(m_heartbeat, false));
    m_heartbeatService = m_subServices.back().get();
}

void WindowsManager::connectRecognition() {
    AsrManager *asrManager = m_webSocketWorker->asrManager();
    connect(m_connectionManager, &ConnectionManager::disconnected,
            m_webSocketWorker->resultManager(), &ResultManager::flushResult);
    connect(m_webSocketWorker->resultManager(), &ResultManager::notifyUser, this,
            &WindowsManager::processUserNotification);
    connect(asrManager, &AsrManager::currentModeOrStateChanged, this,
            &WindowsManager::onAsrModeStateChanged);
    // Its argument is a reference, so it has to be raised on the main thread.
    connect(asrManager, &AsrManager::errorNotification, m_tray.get(), &SystemTray::showError);
    connect(this, &WindowsManager::activationHotkey, asrManager, &AsrManager::startRecognition);
    connect(this, &WindowsManager::deactivationHotkey, asrManager, &AsrManager::stopRecognition);
    connect(this, &WindowsManager::modeChangeHotkey, asrManager, &AsrManager::changeRecognition);
}

void WindowsManager::createRestProxy(QQmlApplicationEngine *engine) {
    m_restProxy = std::make_unique<RestProxyServer>();
    connect(m_restProxy.get(), &RestProxyServer::listenFailed, m_notices.get(),
            [this](int port) { m_notices->tellTakenPort(port, QStringLiteral("RestPort")); });
    engine->rootContext()->setContextProperty(QStringLiteral("restProxyServer"), m_restProxy.get());
}

void WindowsManager::createUserViewModels(QQmlApplicationEngine *engine) {
    AsrManager *asrManager = m_webSocketWorker->asrManager();
    m_feedbackViewModel = std::make_unique<FeedbackViewModel>(asrManager, m_recordingDevice);
    connect(m_feedbackViewModel.get(), &FeedbackViewModel::notifyUser, this,
            &WindowsManager::processUserNotification);
    m_avocadoViewModel =
        std::make_unique<AvocadoViewModel>(asrManager, m_webSocketWorker->localAvocadoManager());
    connect(m_avocadoViewModel.get(), &AvocadoViewModel::notifyUser, this,
            &WindowsManager::processUserNotification);
    m_statisticsViewModel = std::make_unique<StatisticsViewModel>();
    engine->rootContext()->setContextProperty(QStringLiteral("feedbackViewModel"),
                                              m_feedbackViewModel.get());
    engine->rootContext()->setContextProperty(QStringLiteral("avocadoViewModel"),
                                              m_avocadoViewModel.get());
    engine->rootContext()->setContextProperty(QStringLiteral("statisticsViewModel"),
                                              m_statisticsViewModel.get());
}

void WindowsManager::createSelfTest(QQmlApplicationEngine *engine) {
    m_selfTestViewModel = std::make_unique<SelfTestViewModel>(nullptr);
    m_selfTest =
        std::make_unique<SelfTest>(m_selfTestViewModel.get(), m_webSocketWorker,
                                   m_connectionManager, m_heartbeat, m_recordingDevice, nullptr);
    engine->rootContext()->setContextProperty(QStringLiteral("selfTestViewModel"),
                                              m_selfTestViewModel.get());
}

void WindowsManager::createTtsManager(PlaybackDeviceManager *playbackDevice,
                                      SynthesisSettingsViewModel *synthesis) {
    m_ttsManager = std::make_unique<TtsManager>();
    synthesis->set_TtsManager(m_ttsManager.get());
    connect(m_ttsManager.get(), &TtsManager::stateChanged, synthesis,
            &SynthesisSettingsViewModel::OnTtsStateChanged, Qt::QueuedConnection);
    connect(synthesis, &SynthesisSettingsViewModel::ttsSettingsChanged, m_ttsManager.get(),
            &TtsManager::onTtsSettingsChanged);
    WebSocketClient *client = m_webSocketWorker->wsClient();
    connect(m_connectionManager, &ConnectionManager::stateChanged, m_ttsManager.get(),
            &TtsManager::onConnectionStateChanged, Qt::DirectConnection);
    connect(client->messageProcessor(), &DataMessageProcessor::ttsStateReceived, m_ttsManager.get(),
            &TtsManager::onTtsStateReceived);
    connect(client->messageProcessor(), &DataMessageProcessor::ttsSound, m_ttsManager.get(),
            &TtsManager::onSoundRecived);
    connect(m_ttsManager.get(), &TtsManager::playSound, playbackDevice,
            &PlaybackDeviceManager::playSound, Qt::QueuedConnection);
    connect(m_ttsManager.get(), &TtsManager::sendTtsParams, client,
            &WebSocketConnection::sendObject);
    connect(m_ttsManager.get(), &TtsManager::sendVoiceRequest, client,
            &WebSocketConnection::sendObject);
}

void WindowsManager::followPrimaryScreen() {
    const auto follow = [this](const QScreen *screen) {
        if (!screen)
            return;
        // A former primary screen only leads to the same numbers once more.
        connect(screen, &QScreen::availableGeometryChanged, this, &WindowsManager::placeOnScreen,
                Qt::UniqueConnection);
        placeOnScreen();
    };
    connect(qGuiApp, &QGuiApplication::primaryScreenChanged, this, follow);
    follow(QGuiApplication::primaryScreen());
}

void WindowsManager::placeOnScreen() {
    const QScreen *screen = QGuiApplication::primaryScreen();
    if (!screen)
        return;
    const QRect area = availableGeometry(screen);
    if (m_screenX != area.x())
        emit changed_ScreenX(m_screenX = area.x());
    if (m_screenY != area.y())
        emit changed_ScreenY(m_screenY = area.y());
    if (m_screenAvailableSize != area.size())
        emit changed_ScreenAvailableSize(m_screenAvailableSize = area.size());
}

void WindowsManager::startSubServices() {
    if (m_subServicesStarted)
        return;
    m_subServicesStarted = true;
    for (const auto &service : m_subServices) {
        if (service->autoStart())
            service->Start();
    }
    m_notices->tellLimits();
}

void WindowsManager::stopSubServices() {
    for (auto service = m_subServices.rbegin(); service != m_subServices.rend(); ++service) {
        (*service)->Stop();
        // A start that was asked for just before.
        QCoreApplication::removePostedEvents(service->get(), QEvent::MetaCall);
    }
}

void WindowsManager::closeApplication() {
    stopSubServices();
    m_hotKeyManager->keyboardHookUnreg();
    m_tray->trayIcon()->hide();
    QCoreApplication::quit();
}

void WindowsManager::restartApplication() {
    closeApplication();
    // The new process must find the guard free, and this one still has its event loop to leave.
    m_runGuard->release();
    QStringList arguments = QCoreApplication::arguments();
    const QString program = arguments.takeFirst();
    if (!QProcess::startDetached(program, arguments))
        qCritical().noquote() << "Cannot start again:" << program;
}

bool WindowsManager::isMicrophoneMissing() const {
    // Whoever has muted it sends sound of his own.
    return m_recordingDevice->SelectedIndex() == -1 && !m_recordingDevice->isMuted();
}

void WindowsManager::onSelectedMicrophoneChanged() {
    if (isMicrophoneMissing())
        reportMissingMicrophone();
}

void WindowsManager::reportMissingMicrophone() {
    showTrayMessage(UserNotification(NotificationType::Critical, tr("Микрофон не обнаружен"),
                                     tr("Убедитесь что устройство подключено правильно")));
    m_webSocketWorker->asrManager()->stopRecognition();
}

void WindowsManager::showTrayMessage(const UserNotification &notification) {
    m_tray->showMessage(notification.title(), notification.message(),
                        messageIcon(notification.type()));
}

void WindowsManager::reportStart() {
    if (isMicrophoneMissing()) {
        reportMissingMicrophone();
        m_playbackDevice->playSoundFile(QStringLiteral(":/Assets/SpeechOff.wav"));
    } else {
        m_playbackDevice->playSoundFile(QStringLiteral(":/Assets/SpeechOn.wav"));
    }
}

void WindowsManager::onHotkeyActivated(int hotkeyClass, int hotkeyId, int keyPressType) {
    qInfo().noquote().nospace() << "HOTKEY ACTIVATED: " << hotkeyClass << "|" << hotkeyId << "|"
                                << keyPressType << "|";
    if (hotkeyClass == ToggleHotkey)
        emit modeChangeHotkey();
    else if (hotkeyClass == Push2TalkHotkey && keyPressType == KeyDown)
        emit activationHotkey();
    else if (hotkeyClass == Push2TalkHotkey && keyPressType == KeyUp)
        emit deactivationHotkey();
}

void WindowsManager::onHotkeyChanged(int, int) {
    notifyHotkey();
}

void WindowsManager::notifyHotkey() {
    const HotkeySettings settings;
    QString message;
    if (settings.UseHotkey) {
        message = tr("Зарегистрирована горячая клавиша включения распознавания: '%1'.")
                      .arg(displayName<Hotkey>(settings.HotKey));
    } else {
        message = tr("Зарегистрирована горячая клавиша включения распознавания (режим "
                     "Push2Talk): '%1'.")
                      .arg(displayName<Push2TalkKey>(settings.P2TKey));
    }
    processUserNotification(
        UserNotification(NotificationType::Information, tr("Оповещение"), message));
}

void WindowsManager::processUserNotification(const UserNotification &notification) {
    {
        // Not held during the action, which may lead back here.
        const QMutexLocker locker(&m_notificationMutex);
        const bool isReady =
            m_connectionManager && m_connectionManager->state() == ConnectionState::Ready;
        if (!isReady && !notification.force())
            return;
        qInfo().noquote() << "Notification: " + notification.message();
    }
    switch (notification.action()) {
    case NotificationAction::Disconnect:
        QMetaObject::invokeMethod(m_connectionManager, &ConnectionManager::onDisconnectRequested);
        break;
    case NotificationAction::StopRecognition:
        m_webSocketWorker->asrManager()->stopRecognition();
        showTrayMessage(notification);
        break;
    case NotificationAction::Show:
        showTrayMessage(notification);
        break;
    }
}

void WindowsManager::OnCommandError(const QString &errorText) {
    processUserNotification(UserNotification(NotificationType::Critical, QString(), errorText));
}

void WindowsManager::onVACSettingsVisibleChanged(bool vacVisible) {
    UserNotification notification(
        NotificationType::Information, tr("Голосовая активация"),
        vacVisible ? tr("В настройках доступен запуск распознавания голосовой командой.")
                   : tr("Запуск распознавания голосовой командой недоступен."));
    notification.setForce(true);
    processUserNotification(notification);
}

void WindowsManager::onConnectionStateChanged(const ConnectionStateInfo &stateInfo) {
    emit connectionStateChanged(stateInfo);
    if (!m_heartbeatService)
        return;
    if (stateInfo.is(ConnectionState::WsConnected)) {
        m_heartbeatService->Start();
    } else if (stateInfo.is(ConnectionState::Disconnected)) {
        m_heartbeatService->Stop();
    } else if (stateInfo.is(ConnectionState::Ready) && m_notifyHotkeyOnReady) {
        notifyHotkey();
        m_notifyHotkeyOnReady = false;
    }
}

void WindowsManager::onAsrModeStateChanged(RecognitionMode mode, AsrState state) {
    if (mode < RecognitionMode::Text)
        return;
    // Of several screens Qt does not tell when a panel comes or goes.
    if (state == AsrState::Starting)
        placeOnScreen();
    const RecognitionMode last = m_webSocketWorker->asrManager()->getLastStartedMode();
    if (state == AsrState::Started && mode != last)
        reportStart();
    else if (state == AsrState::Stopping && mode == last)
        m_playbackDevice->playSoundFile(QStringLiteral(":/Assets/SpeechOff.wav"));
}
