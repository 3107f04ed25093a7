#include "diagnostics/SelfTest.h"

#include "audio/RecordingDeviceManager.h"
#include "connection/ConnectionHeartbeat.h"
#include "connection/ConnectionManager.h"
#include "connection/DataMessageProcessor.h"
#include "connection/WebSocketClient.h"
#include "connection/WebSocketWorker.h"
#include "core/AppVariables.h"
#include "diagnostics/SelfTestViewModel.h"
#include "recognition/AsrManager.h"
#include "recognition/ResultManager.h"

#include <QFileInfo>
#include <QWebSocket>

#include <algorithm>

namespace {

/// Of the microphone's format.
constexpr int bytesPerMs = 32;

/// The usual limit between two pings is their usual distance as well: a ping that is on its way is
/// not late.
constexpr int pingGraceMs = 500;

} // namespace

SelfTest::SelfTest(SelfTestViewModel *viewModel, WebSocketWorker *webSocketWorker,
                   ConnectionManager *connectionManager, ConnectionHeartbeat *heartbeat,
                   RecordingDeviceManager *recordingDevice, QObject *parent)
    : QObject(parent),
      m_viewModel(viewModel),
      m_webSocketWorker(webSocketWorker),
      m_connectionManager(connectionManager),
      m_heartbeat(heartbeat),
      m_recordingDevice(recordingDevice) {
    m_guardTimer.setSingleShot(true);
    // The one is measured with, the other sets the pace of speech.
    m_guardTimer.setTimerType(Qt::PreciseTimer);
    m_soundTimer.setTimerType(Qt::PreciseTimer);
    connect(viewModel, &SelfTestViewModel::load, this, &SelfTest::onLoad);
    connect(viewModel, &SelfTestViewModel::close, this, &SelfTest::onClose);
    connect(viewModel, &SelfTestViewModel::clear, this, &SelfTest::onClear);
    connect(viewModel, &SelfTestViewModel::start, this, &SelfTest::onStart);
    connect(viewModel, &SelfTestViewModel::stop, this, &SelfTest::onStop);
}

void SelfTest::onLoad() {
    m_settings = std::make_unique<SelfTestSettings>();
    m_files = m_settings->get_Files();
    m_blockSize = qMax(1, m_settings->SoundPeriod.get()) * bytesPerMs;
    // What was dictated up to here is not to be lost with the results of the test.
    m_webSocketWorker->resultManager()->flushResult();
    m_webSocketWorker->resultManager()->setEnabled(false);
    connect(m_heartbeat, &ConnectionHeartbeat::ping, this, &SelfTest::onPing, Qt::UniqueConnection);
    connect(m_webSocketWorker->wsClient()->socket(), &QWebSocket::pong, this, &SelfTest::onPong,
            Qt::UniqueConnection);
    connect(m_connectionManager, &ConnectionManager::stateChanged, this,
            &SelfTest::onConnectionState, Qt::UniqueConnection);
    m_recordingDevice->setMuted(true);
    m_viewModel->set_IsConnected(m_connectionManager->state() == ConnectionState::Ready);
    m_webSocketWorker->asrManager()->stopRecognition();
    onClear();
    m_phase = Phase::Idle;
    m_viewModel->set_IsStarted(false);
}

void SelfTest::onClose() {
    onStop();
    disconnect(m_heartbeat, &ConnectionHeartbeat::ping, this, &SelfTest::onPing);
    disconnect(m_webSocketWorker->wsClient()->socket(), &QWebSocket::pong, this, &SelfTest::onPong);
    m_recordingDevice->setMuted(false);
    m_file.reset();
    m_settings.reset();
    m_webSocketWorker->resultManager()->setEnabled(true);
}

void SelfTest::onClear() {
    clearPingFigures();
    emit m_viewModel->clearLog();
}

void SelfTest::clearPingFigures() {
    m_ping = PingFigures();
    m_viewModel->set_PingCount(0);
    m_viewModel->set_PongCount(0);
    m_viewModel->set_MinDelay(0);
    m_viewModel->set_MaxDelay(0);
    m_viewModel->set_AvgDelay(0);
}

void SelfTest::onStart() {
    if (m_phase != Phase::Idle || !m_settings)
        return;
    m_report.open();
    emit m_viewModel->clearLog();
    connect(m_webSocketWorker->asrManager(), &AsrManager::currentModeOrStateChanged, this,
            &SelfTest::onAsrMode);
    connect(m_webSocketWorker->wsClient()->messageProcessor(),
            &DataMessageProcessor::resultReceived, this, &SelfTest::result_received);
    pingTest();
}

void SelfTest::onStop() {
    if (m_phase == Phase::Idle)
        return;
    stopTimers();
    disconnect(m_webSocketWorker->wsClient()->messageProcessor(),
               &DataMessageProcessor::resultReceived, this, &SelfTest::result_received);
    disconnect(m_webSocketWorker->asrManager(), &AsrManager::currentModeOrStateChanged, this,
               &SelfTest::onAsrMode);
    m_webSocketWorker->asrManager()->stopRecognition();
    m_phase = Phase::Idle;
    m_viewModel->set_IsStarted(false);
    Log(QStringLiteral("\nStopped"));
    m_file.reset();
    m_report.close();
}

void SelfTest::stopTimers() {
    for (QTimer *timer : {&m_guardTimer, &m_soundTimer}) {
        timer->stop();
        timer->disconnect(this);
    }
}

void SelfTest::startGuard(int limitMs, void (SelfTest::*onTimeout)()) {
    m_guardTimer.disconnect(this);
    connect(&m_guardTimer, &QTimer::timeout, this, onTimeout);
    m_guardTimer.start(limitMs);
}

int SelfTest::guardElapsedMs() const {
    return m_guardTimer.interval() - m_guardTimer.remainingTime();
}

void SelfTest::pingTest() {
    stopTimers();
    Log(QStringLiteral("\nPing test"));
    m_webSocketWorker->asrManager()->stopRecognition();
    clearPingFigures();
    startGuard(m_settings->PingTimeout + pingGraceMs, &SelfTest::ping_timeout);
    m_phase = Phase::Ping;
    m_viewModel->set_IsStarted(true);
}

void SelfTest::onPing() {
    m_viewModel->set_PingCount(++m_ping.requests);
    if (m_phase == Phase::Ping)
        m_guardTimer.start(m_settings->PingTimeout + pingGraceMs);
}

void SelfTest::onPong(qulonglong elapsedTime, const QByteArray &) {
    m_viewModel->set_PongCount(++m_ping.responses);
    m_ping.maximumMs = qMax(m_ping.maximumMs, elapsedTime);
    m_ping.minimumMs = qMin(m_ping.minimumMs, elapsedTime);
    m_viewModel->set_MaxDelay(m_ping.maximumMs);
    m_viewModel->set_MinDelay(m_ping.minimumMs);
    m_ping.sumMs += elapsedTime;
    const qulonglong hundredths = m_ping.sumMs * 100 / m_ping.responses;
    m_ping.averageMs = static_cast<double>(hundredths) / 100.0;
    m_viewModel->set_AvgDelay(m_ping.averageMs);
    if (m_phase != Phase::Ping)
        return;
    Log(QStringLiteral("\nPing %1 ms").arg(elapsedTime));
    if (m_ping.requests >= static_cast<qulonglong>(qMax(0, m_settings->PingCount.get())))
        finishPingTest();
}

void SelfTest::finishPingTest() {
    Log(QStringLiteral("\n%1 requests, %2 responses").arg(m_ping.requests).arg(m_ping.responses));
    Log(QStringLiteral("\nmin delay %1 ms, max delay %2 ms, average delay %3 ms")
            .arg(m_ping.minimumMs)
            .arg(m_ping.maximumMs)
            .arg(m_ping.averageMs));
    m_report.addRow(QStringLiteral("ping;%1;%2;%3;%4;%5\n")
                        .arg(m_ping.requests)
                        .arg(m_ping.responses)
                        .arg(m_ping.minimumMs)
                        .arg(m_ping.maximumMs)
                        .arg(m_ping.averageMs));
    m_fileIndex = 0;
    if (m_files.isEmpty()) {
        Log(QStringLiteral("\nNo files"));
        onStop();
        return;
    }
    Log(QStringLiteral("\n\nStart recognition"));
    startRecognition();
}

void SelfTest::startRecognition() {
    startGuard(m_settings->StartTimeout, &SelfTest::start_timeout);
    // First: the request changes modes at once, which would end the file before once more.
    m_phase = Phase::Starting;
    m_webSocketWorker->asrManager()->startRecognition();
    m_viewModel->set_IsStarted(true);
}

void SelfTest::onAsrMode(RecognitionMode mode, AsrState state) {
    if (mode == RecognitionMode::Text && state == AsrState::Started && m_phase == Phase::Starting) {
        const int elapsedMs = guardElapsedMs();
        stopTimers();
        Log(QStringLiteral("\nRecognition started in %1 ms").arg(elapsedMs));
        connect(&m_guardTimer, &QTimer::timeout, this, &SelfTest::result_timeout);
        connect(&m_soundTimer, &QTimer::timeout, this, &SelfTest::send_data);
        m_phase = Phase::Sending;
        NextFile();
    } else if (mode != RecognitionMode::Text && m_phase == Phase::Ending) {
        stopTimers();
        logCount();
        if (m_fileIndex < m_files.size())
            startRecognition();
        else if (m_viewModel->get_Loop())
            pingTest();
        else
            onStop();
    }
}

void SelfTest::logCount() {
    const int difference = m_receivedResults - m_expectedResults;
    if (difference == 0) {
        Log(QStringLiteral("\nAll %1 results received\n").arg(m_receivedResults));
    } else {
        Log((difference < 0 ? QStringLiteral("\nRecieved %1 of %2 results, %3 results lost\n")
                            : QStringLiteral("\nRecieved %1 of %2 results, %3 extra results\n"))
                .arg(m_receivedResults)
                .arg(m_expectedResults)
                .arg(qAbs(difference)));
    }
}

void SelfTest::NextFile() {
    if (m_fileIndex >= m_files.size()) {
        onStop();
        return;
    }
    const SelfTestFile &file = m_files[m_fileIndex++];
    m_receivedResults = 0;
    m_expectedResults = file.results;
    m_tailLeft = file.tail;
    m_file = std::make_unique<QFile>(AppVariables::sm_stdVars.substitute(file.path));
    m_fileName = QFileInfo(*m_file).fileName();
    // The end of recognition is waited for no longer than that either.
    m_guardTimer.start(m_settings->StopTimeout);
    if (!m_file->open(QIODevice::ReadOnly)) {
        Log(QStringLiteral("\nCannot open file ") + QFileInfo(*m_file).absoluteFilePath());
        m_file.reset();
        stopRecognition();
        return;
    }
    Log(QStringLiteral("\nPlay file ") + m_fileName);
    m_soundTimer.start(m_settings->SoundPeriod);
    send_data();
}

void SelfTest::send_data() {
    if (!m_file)
        return;
    QByteArray block(m_blockSize, Qt::Uninitialized);
    const qint64 count = m_file->read(block.data(), block.size());
    if (count < 0) {
        Log(QStringLiteral("\nRead error: ") + m_file->errorString());
        m_file.reset();
        NextFile();
        return;
    }
    if (!padBlock(&block, static_cast<int>(count)))
        return;
    // In the window only: a line of dots is no report.
    emit m_viewModel->appendLog(QStringLiteral("."));
    m_webSocketWorker->wsClient()->sendDataBytes(block);
}

bool SelfTest::padBlock(QByteArray *block, int filled) {
    const int silence = block->size() - filled;
    if (silence == 0)
        return true;
    if (m_tailLeft < 1) {
        m_file.reset();
        stopRecognition();
        return false;
    }
    std::fill(block->begin() + filled, block->end(), '\0');
    m_tailLeft -= silence;
    return true;
}

void SelfTest::stopRecognition() {
    Log(QStringLiteral("\nFinished ") + m_fileName);
    m_webSocketWorker->asrManager()->stopRecognition();
    m_phase = Phase::Ending;
    m_viewModel->set_IsStarted(true);
}

void SelfTest::result_received(const TextResult &result) {
    if (!result.isFinal())
        return;
    ++m_receivedResults;
    const int elapsedMs = guardElapsedMs();
    const QString text = result.text();
    Log(QStringLiteral("\nResult %1 in %2 ms: ").arg(m_receivedResults).arg(elapsedMs) + text);
    m_report.addRow(QStringLiteral("result;%1;%2;%3;%4;%5;\"%6\";\"%7\"\n")
                        .arg(m_fileIndex)
                        .arg(m_receivedResults)
                        .arg(m_expectedResults)
                        .arg(m_phase == Phase::Sending ? 1 : 0)
                        .arg(elapsedMs)
                        .arg(m_fileName, text));
}

void SelfTest::onConnectionState(const ConnectionStateInfo &info) {
    const bool isReady = info.is(ConnectionState::Ready);
    if (!isReady)
        onStop();
    m_viewModel->set_IsConnected(isReady);
}

void SelfTest::ping_timeout() {
    fail(QStringLiteral("\nPing timeout"));
}

void SelfTest::start_timeout() {
    fail(QStringLiteral("\nStart recognition timeout"));
}

void SelfTest::result_timeout() {
    fail(QStringLiteral("Stop recognition timeout"));
}

void SelfTest::fail(const QString &text) {
    Log(text);
    onStop();
}

void SelfTest::Log(const QString &text) {
    m_report.log(text);
    emit m_viewModel->appendLog(text);
}
