#pragma once

#include <QList>
#include <QObject>

#include <optional>

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

    /// From here on changes go to the server: their turn among the opening messages has come.
    /// @param connectionNumber  the client's number of the connection that is ready
    void startAnnouncing(int connectionNumber);

public slots:
    /// Sends the whole list, which replaces what the server held. Outside a connection that is
    /// ready nothing is sent: the list goes out with the next one.
    void refreshCommands();
    void stopAnnouncing() { m_announcedConnection.reset(); }

private:
    bool isAnnouncing() const;

    QList<ExecutableCommandsSource *> m_sources;
    WebSocketClient *m_client;
    /// The connection that hears of changes; nothing while none is ready.
    std::optional<int> m_announcedConnection;
};
