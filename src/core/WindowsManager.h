#pragma once

#include "connection/ConnectionStateInfo.h"
#include "connection/messages/UserNotification.h"
#include "recognition/RecognitionMode.h"

#include <QList>
#include <QMutex>
#include <QObject>
#include <QSize>
#include <QString>

#include <memory>
#include <vector>

class AutoReplaceManager;
class AvocadoViewModel;
class CommandsViewModel;
class ConnectionHeartbeat;
class ConnectionManager;
class FeedbackViewModel;
class HotKeyManager;
class LaunchSettingsViewModel;
class NetworkSettingsViewModel;
class PlaybackDeviceManager;
class PulseAudioManager;
class QQmlApplicationEngine;
class QWindow;
class RecognitionSettingsViewModel;
class RecordingDeviceManager;
class RestProxyServer;
class RunGuard;
class SelfTest;
class SelfTestViewModel;
class SessionNotices;
class StatisticsViewModel;
class SubService;
class SynthesisSettingsViewModel;
class SystemTray;
class TtsManager;
class UserCommandsManager;
class WebSocketWorker;

/// The application controller: builds every manager in a fixed order, wires them together, loads
/// the interface, runs the event loop and takes everything down again. It alone knows the whole
/// object graph. Main thread.
class WindowsManager : public QObject {
    Q_OBJECT
    Q_PROPERTY(int ScreenX READ get_ScreenX NOTIFY changed_ScreenX)
    Q_PROPERTY(int ScreenY READ get_ScreenY NOTIFY changed_ScreenY)
    /// Size of the primary screen's available geometry; QML's own values span all screens.
    Q_PROPERTY(
        int ScreenAvailableWidth READ get_ScreenAvailableWidth NOTIFY changed_ScreenAvailableSize)
    Q_PROPERTY(
        int ScreenAvailableHeight READ get_ScreenAvailableHeight NOTIFY changed_ScreenAvailableSize)

public:
    explicit WindowsManager(QObject *parent);
    ~WindowsManager() override;

    /// The whole life of the application.
    /// @return the event loop's exit code, or -1 on failure
    int start(int argc, char **argv);

    /// Stops all services, hides the tray icon and ends the event loop.
    Q_INVOKABLE void closeApplication();

    /// Shows a message of the tray, or does what the notification asks for.
    void processUserNotification(const UserNotification &notification);

    int get_ScreenX() const { return m_screenX; }
    int get_ScreenY() const { return m_screenY; }
    int get_ScreenAvailableWidth() const { return m_screenAvailableSize.width(); }
    int get_ScreenAvailableHeight() const { return m_screenAvailableSize.height(); }

public slots:
    /// Starts the workers; a second call does nothing.
    void startSubServices();
    void restartApplication();
    void onVACSettingsVisibleChanged(bool vacVisible);
    void OnCommandError(const QString &errorText);
    void onConnectionStateChanged(const ConnectionStateInfo &stateInfo);
    void notifyHotkey();
    void onHotkeyActivated(int hotkeyClass, int hotkeyId, int keyPressType);
    void onHotkeyChanged(int hotkeyClass, int hotkeyId);
    void onAsrModeStateChanged(RecognitionMode mode, AsrState state);

signals:
    void connectionStateChanged(ConnectionStateInfo stateInfo);
    void restartConnection();
    void themeCheckRequested();
    void themeCheckSuccess();
    void wsDisconnected();
    void activationHotkey();
    void deactivationHotkey();
    void modeChangeHotkey();
    void needReconnect();
    void changed_ScreenX(int v);
    void changed_ScreenY(int v);
    void changed_ScreenAvailableSize(const QSize &v);

private:
    int runApplication(int argc, char **argv);
    int runInterface(QQmlApplicationEngine *engine);
    /// The end of runApplication, also when an exception ends it.
    void takeDown(PulseAudioManager *pulseAudio);
    /// Ends the devices and the forms' REST proxy; a second call does nothing.
    void stopDevices(PulseAudioManager *pulseAudio);
    void createWebSocketWorker(AutoReplaceManager *autoReplace,
                               RecognitionSettingsViewModel *recognition,
                               UserCommandsManager *userCommands);
    /// Reads the command files; what is wrong with one the user is told before the start ends.
    void loadCommands(UserCommandsManager *userCommands);
    void createConnectionManager(QQmlApplicationEngine *engine, NetworkSettingsViewModel *network,
                                 RecordingDeviceManager *recordingDevice);
    void createHeartbeat();
    void createRestProxy(QQmlApplicationEngine *engine);
    /// Feedback, personal words and the profile.
    void createUserViewModels(QQmlApplicationEngine *engine);
    void createSelfTest(QQmlApplicationEngine *engine);
    void createTtsManager(PlaybackDeviceManager *playbackDevice,
                          SynthesisSettingsViewModel *synthesis);
    void createTray(QQmlApplicationEngine *engine);
    void leaveSessionToItsManager();
    void connectHotKeys();
    void connectLaunchSettings(LaunchSettingsViewModel *launch);
    void connectRecognition();
    void applyNetworkSettings(bool bASR_changed, bool bFormAPI_changed);
    void onSelectedMicrophoneChanged();
    /// The signal that dictation begins, or that there is nothing to hear it with.
    void reportStart();
    bool isMicrophoneMissing() const;
    void reportMissingMicrophone();
    void showTrayMessage(const UserNotification &notification);
    void followPrimaryScreen();
    void placeOnScreen();
    void stopSubServices();
    static void disablePunctuationWhereUnavailable();

    const QString m_mainQml = QStringLiteral("qrc:/main.qml");
    const QString m_fontFamily = QStringLiteral("Roboto");
    const QString m_iconPath = QStringLiteral(":/replaceable/default_icon.ico");
    bool m_subServicesStarted = false;
    /// In the order of creation; each owns its worker.
    std::vector<std::unique_ptr<SubService>> m_subServices;
    std::unique_ptr<SystemTray> m_tray;
    std::unique_ptr<SessionNotices> m_notices;
    QWindow *m_mainWindow = nullptr;
    ConnectionManager *m_connectionManager = nullptr;
    WebSocketWorker *m_webSocketWorker = nullptr;
    SubService *m_heartbeatService = nullptr;
    ConnectionHeartbeat *m_heartbeat = nullptr;
    RecordingDeviceManager *m_recordingDevice = nullptr;
    PlaybackDeviceManager *m_playbackDevice = nullptr;
    std::unique_ptr<TtsManager> m_ttsManager;
    std::unique_ptr<RestProxyServer> m_restProxy;
    std::unique_ptr<FeedbackViewModel> m_feedbackViewModel;
    std::unique_ptr<AvocadoViewModel> m_avocadoViewModel;
    std::unique_ptr<StatisticsViewModel> m_statisticsViewModel;
    std::unique_ptr<SelfTestViewModel> m_selfTestViewModel;
    std::unique_ptr<SelfTest> m_selfTest;
    bool m_statisticsEnabled = false;
    int m_exitStatus = -1;
    HotKeyManager *m_hotKeyManager = nullptr;
    RunGuard *m_runGuard = nullptr;
    QMutex m_notificationMutex;
    bool m_notifyHotkeyOnReady = true;
    int m_screenX = 0;
    int m_screenY = 0;
    QSize m_screenAvailableSize;
};
