#pragma once

#include <QMutex>
#include <QString>
#include <QStringList>

class WebSocketClient;

/// The user's personal words: the list, its file of one word a line, and the sending to the server.
///
/// The list is changed, and announcing begins, on the main thread; reading and sending are safe
/// from any thread.
class LocalAvocadoManager {
public:
    /// Reads the file; a missing or unreadable one is an empty list.
    /// @param client  not owned, outlives this object
    explicit LocalAvocadoManager(WebSocketClient *client);

    QStringList GetWords() const;

    /// Replaces the list, saves it and sends it. A failure to write is only logged: the list still
    /// goes to the server, and the old file stays whole.
    void UpdateWords(const QStringList &words);
    /// From now on changes go to this connection of the client; to be called on the main thread.
    void startAnnouncing(int connectionNumber);

    void SendAvocadoInfo() const;

private:
    void LoadCache();
    void SaveCache() const;

    WebSocketClient *m_client;
    QString m_folder;
    QString m_file;
    QStringList m_words;
    mutable QMutex m_mutex;
    /// Of the main thread.
    int m_announcedConnection = -1;
};
