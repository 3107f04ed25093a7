#pragma once

#include <QList>
#include <QObject>

class ExecutableCommandsSource;
class WebSocketClient;

/// Announces the commands of all sources to the server and hands a recognised one to the source
/// that owns it. Main thread; sources and client are not owned.
class ExecutableCommandsManager : public QObject {
    Q_OBJECT

public:
    ExecutableCommandsManager(const QList<ExecutableCommandsSource *> &sources,
                              WebSocketClient *client);

    /// Runs the command with this id, compared exactly.
    /// @return the text that it produced; empty also for an unknown id
    QString executeCommand(const QString &id);

    /// From here on changes go to the server: its turn among the opening messages has come.
    void startAnnouncing() { m_isAnnouncing = true; }

public slots:
    /// Sends the whole list, which replaces what the server held. Outside a connection that is
    /// ready nothing is sent: the list goes out with the next one.
    void refreshCommands();
    void stopAnnouncing() { m_isAnnouncing = false; }

private:
    QList<ExecutableCommandsSource *> m_sources;
    WebSocketClient *m_client;
    bool m_isAnnouncing = false;
};
