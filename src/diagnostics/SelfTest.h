#pragma once

#include "connection/ConnectionStateInfo.h"
#include "connection/messages/RecognitionModeInfo.h"
#include "connection/messages/TextResult.h"
#include "core/settings/SelfTestSettings.h"
#include "diagnostics/SelfTestReport.h"

#include <QObject>
#include <QTimer>

#include <memory>

class ConnectionHeartbeat;
class ConnectionManager;
class RecordingDeviceManager;
class SelfTestViewModel;
class WebSocketWorker;

/// Measures an installation without a microphone or a person: times the connection's pings, then
/// plays sound files to the server at the pace of speech and counts the results of each. While its
/// window is open, results are not typed and the microphone is mute.
///
/// Main thread. The collaborators are not owned and outlive this object.
class SelfTest : public QObject {
    Q_OBJECT

public:
    SelfTest(SelfTestViewModel *viewModel, WebSocketWorker *webSocketWorker,
             ConnectionManager *connectionManager, ConnectionHeartbeat *heartbeat,
             RecordingDeviceManager *recordingDevice, QObject *parent);

public slots:
    void onLoad();
    void onClose();
    void onClear();
    void onStart();
    void onStop();
    void onPing();
    /// @param elapsedTime  of the answer, milliseconds
    void onPong(qulonglong elapsedTime, const QByteArray &payload);
    void onConnectionState(const ConnectionStateInfo &info);
    void onAsrMode(RecognitionMode mode, AsrState state);

private slots:
    void result_received(const TextResult &result);
    void ping_timeout();
    void start_timeout();
    void result_timeout();
    void send_data();

private:
    enum class Phase { Idle, Ping, Starting, Sending, Ending };

    struct PingFigures {
        qulonglong requests = 0;
        qulonglong responses = 0;
        qulonglong minimumMs = 0x7fffffff;
        qulonglong maximumMs = 0;
        qulonglong sumMs = 0;
        double averageMs = 0;
    };

    void pingTest();
    void finishPingTest();
    void startRecognition();
    void stopRecognition();
    void NextFile();
    /// Fills the end of the block with silence. @return false if nothing more is to be sent
    bool padBlock(QByteArray *block, int filled);
    void logCount();
    void stopTimers();
    /// Starts the one limit that counts now.
    void startGuard(int limitMs, void (SelfTest::*onTimeout)());
    /// Since the guard timer was started, milliseconds.
    int guardElapsedMs() const;
    void clearPingFigures();
    void Log(const QString &text);
    void fail(const QString &text);

    SelfTestViewModel *m_viewModel;
    WebSocketWorker *m_webSocketWorker;
    ConnectionManager *m_connectionManager;
    ConnectionHeartbeat *m_heartbeat;
    RecordingDeviceManager *m_recordingDevice;
    Phase m_phase = Phase::Idle;
    /// While the window is open.
    std::unique_ptr<SelfTestSettings> m_settings;
    PingFigures m_ping;
    QList<SelfTestFile> m_files;
    /// How many files of this pass have been begun.
    int m_fileIndex = 0;
    QString m_fileName;
    /// Bytes of one block of sound.
    int m_blockSize = 0;
    /// Null between files.
    std::unique_ptr<QFile> m_file;
    /// Bytes of silence still to send after the file's end.
    int m_tailLeft = 0;
    int m_expectedResults = 0;
    int m_receivedResults = 0;
    QTimer m_guardTimer;
    QTimer m_soundTimer;
    SelfTestReport m_report;
};
