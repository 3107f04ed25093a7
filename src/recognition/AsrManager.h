#pragma once

#include "connection/ConnectionStateInfo.h"
#include "connection/RestAccessPoint.h"
#include "connection/messages/RecognitionModeInfo.h"
#include "recognition/TargetModeInfo.h"

#include <QMap>
#include <QMutex>
#include <QObject>

#include <atomic>
#include <optional>

class JsonConvertable;
class WebSocketClient;

/// The client's one authority on what the recogniser does: it mirrors the modes that the server
/// reports, remembers the mode that is wanted, and sends the requests that change them.
///
/// Lives on the main thread. currentState(), isConnected(), get_Themes(), getSelectedTheme(),
/// setEnabled() and the target mode may be used from any thread; get_Themes() may block for one
/// REST request, and others that need the themes wait for it.
class AsrManager : public QObject {
    Q_OBJECT

public:
    /// @param client  not owned, outlives this object
    explicit AsrManager(WebSocketClient *client);

    /// Asks the server for a mode, without waiting for it.
    /// @param mode      nothing for dictation in the mode of the server's choice
    /// @param remember  whether the mode becomes the target
    void startRecognitionMode(std::optional<RecognitionMode> mode, bool remember);
    /// The idle mode: listening for the spoken start command where that is enabled, else nothing.
    void startUninteractiveMode();
    /// Restores on a new connection what was wanted before.
    void startTargetMode();

    void applySelectedTheme(bool stopFirst);
    void updateSelectedThemeInfo(const QString &themeId);
    ClientThemeInfo getSelectedTheme() const;
    /// @param refresh  asks the server also when a list is at hand
    /// @throws Exception  no list came; the old one stays
    QList<ClientThemeInfo> get_Themes(bool refresh);

    /// The state of the target mode.
    AsrState currentState() const;

    void TtsMute();
    void TtsUnmute();

    TargetModeInfo *getTargetModeInfo() { return &m_targetModeInfo; }
    RecognitionMode getLastStartedMode() const { return m_lastStartedMode; }
    void setIsVoiceActivationEnabled(bool enabled) { m_isVoiceActivationEnabled = enabled; }
    bool getEnabled() const { return m_enabled; }
    void setEnabled(bool enabled) { m_enabled = enabled; }

    /// The connection that stands now is ready.
    bool isConnected() const;
    /// Its opening messages have been sent as well.
    bool isOpen() const;
    /// The client's number of the connection that was ready last.
    int connectionNumber() const { return m_connectionNumber; }

public slots:
    void updateModeStateInfo(const RecognitionModeInfo &modeInfo);
    void startRecognition();
    void stopRecognition();
    void changeRecognition();
    void connectionStateChanged(const ConnectionStateInfo &stateInfo);
    void applyRecognitionSettings();
    void selectedTheme();
    /// No server is left: forgets the target and reports all modes as stopped.
    void resetModes();

signals:
    void selectedThemeChanged();
    void currentModeOrStateChanged(RecognitionMode mode, AsrState state);
    /// The place of the commands and of the personal words among the opening messages.
    void connected();
    /// The connection is no longer ready.
    void connectionLost();
    void errorNotification(QString &error);

private:
    void setConnected(const ConnectionStateInfo &stateInfo);
    void openConnection();
    void startTargetForm(const std::optional<FormMetadata> &form,
                         const std::optional<QString> &element);
    /// No server is left that would report the end of what was being stopped.
    void endStopping();
    /// @return whether it is news
    bool storeModeState(RecognitionMode mode, AsrState state);
    void publishTargetState(AsrState state, const QString &info = QString());
    void send(int messageType, const JsonConvertable &record);
    void sendValue(int messageType, const QJsonValue &value);

    WebSocketClient *m_client;
    // This thread alone writes what m_stateMutex guards, and emits nothing while it holds it: a
    // receiver may take its time, and a block of sound asks for the state.
    bool m_connected = false;
    /// The connection that m_connected is about.
    int m_connectionNumber = 0;
    bool m_isOpening = false;
    // m_stateMutex is taken before the mutex of the target mode.
    mutable QRecursiveMutex m_stateMutex;
    mutable QRecursiveMutex m_themesMutex;
    QMap<RecognitionMode, AsrState> m_modeStates;
    TargetModeInfo m_targetModeInfo;
    RestAccessPoint m_restAccessPoint;
    QList<ClientThemeInfo> m_themes;
    /// Written under m_themesMutex and this one, read under either: a reader does not wait for a
    /// request of the themes.
    mutable QMutex m_selectedThemeMutex;
    ClientThemeInfo m_selectedTheme;
    std::atomic<bool> m_isVoiceActivationEnabled{false};
    QString m_lastError;
    RecognitionMode m_lastStartedMode = RecognitionMode::Off;
    std::atomic<bool> m_enabled{true};
};
