#include "connection/WebSocketWorker.h"

#include "commands/ExecutableCommandsManager.h"
#include "commands/LaunchManager.h"
#include "commands/UserCommandsManager.h"
#include "connection/WebSocketClient.h"
#include "core/settings/FormApiSettings.h"
#include "formapi/WebSocketProxyServer.h"
#include "recognition/AsrManager.h"
#include "recognition/LocalAvocadoManager.h"
#include "recognition/ResultManager.h"

#include <QThread>
#include <QWebSocket>

WebSocketWorker::WebSocketWorker(AutoReplaceManager *autoReplaceManager,
                                 UserCommandsManager *userCommandsManager)
    : m_client(new WebSocketClient(this)),
      m_asrManager(std::make_unique<AsrManager>(m_client)),
      m_launchManager(std::make_unique<LaunchManager>(m_asrManager.get())),
      m_executableCommandsManager(std::make_unique<ExecutableCommandsManager>(
          QList<ExecutableCommandsSource *>{userCommandsManager, m_launchManager.get()}, m_client)),
      m_resultManager(std::make_unique<ResultManager>(
          m_client, m_asrManager.get(), autoReplaceManager, m_executableCommandsManager.get())),
      m_localAvocadoManager(std::make_unique<LocalAvocadoManager>(m_client)),
      m_webSocketServer(std::make_unique<WebSocketProxyServer>(m_client, m_resultManager.get(),
                                                               m_asrManager.get(), nullptr)) {
    // Direct: the managers live on the main thread, where the signal is emitted, and their messages
    // have their place between the others of a new connection.
    connect(m_asrManager.get(), &AsrManager::connected, this, &WebSocketWorker::onConnected,
            Qt::DirectConnection);
    connect(m_asrManager.get(), &AsrManager::connectionLost, m_executableCommandsManager.get(),
            &ExecutableCommandsManager::stopAnnouncing);
}

WebSocketWorker::~WebSocketWorker() = default;

void WebSocketWorker::onConnected() {
    m_executableCommandsManager->startAnnouncing(m_asrManager->connectionNumber());
    m_executableCommandsManager->refreshCommands();
    m_localAvocadoManager->startAnnouncing(m_asrManager->connectionNumber());
    m_localAvocadoManager->SendAvocadoInfo();
}

void WebSocketWorker::process(CancellationCondition *cancellation) {
    if (cancellation->isCanceled)
        return;
    emit m_webSocketServer->stop();
    emit m_webSocketServer->start(FormApiSettings().Port);
    // The thread's end is the last moment at which the socket may be closed.
    connect(QThread::currentThread(), &QThread::finished, m_client->socket(), &QWebSocket::abort,
            static_cast<Qt::ConnectionType>(Qt::DirectConnection | Qt::UniqueConnection));
}
