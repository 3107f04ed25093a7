#include "recognition/LocalAvocadoManager.h"

#include "connection/WebSocketClient.h"
#include "connection/messages/AvocadoInfo.h"
#include "connection/messages/MessageType.h"
#include "core/AppVariables.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QMutexLocker>
#include <QSaveFile>
#include <QTextStream>

LocalAvocadoManager::LocalAvocadoManager(WebSocketClient *client)
    : m_client(client),
      m_folder(
          AppVariables::sm_stdVars.substitute(QStringLiteral("${AppLocalDataLocation}/Avocado"))),
      m_file(AppVariables::sm_stdVars.substitute(
          QStringLiteral("${AppLocalDataLocation}/Avocado/AvocadoWords.txt"))) {
    LoadCache();
}

void LocalAvocadoManager::LoadCache() {
    QFile file(m_file);
    if (!file.exists())
        return;
    if (!file.open(QIODevice::ReadOnly)) {
        qWarning().noquote() << "Personal words cannot be read:" << m_file;
        return;
    }
    QTextStream stream(&file);
    stream.setCodec("UTF-8");
    while (!stream.atEnd())
        m_words.append(stream.readLine());
}

void LocalAvocadoManager::SaveCache() const {
    QDir().mkpath(m_folder);
    QSaveFile file(m_file);
    const bool isOpen = file.open(QIODevice::WriteOnly);
    QTextStream stream(&file);
    // Whatever the locale is: one without Russian letters would lose the words.
    stream.setCodec("UTF-8");
    const QStringList words = GetWords();
    for (const QString &word : words)
        stream << word << Qt::endl;
    // commit() alone would take a file that a full disk has cut for a whole one.
    if (!isOpen || stream.status() != QTextStream::Ok || !file.flush() || !file.commit()) {
        qWarning().noquote() << "Personal words cannot be written:" << m_file << "-"
                             << file.errorString();
    }
}

QStringList LocalAvocadoManager::GetWords() const {
    const QMutexLocker locker(&m_mutex);
    return m_words;
}

void LocalAvocadoManager::UpdateWords(const QStringList &words) {
    {
        const QMutexLocker locker(&m_mutex);
        m_words = words;
    }
    SaveCache();
    // Before its turn among the opening messages the server is not to hear of them.
    if (m_announcedConnection == m_client->connectionNumber())
        SendAvocadoInfo();
}

void LocalAvocadoManager::startAnnouncing(int connectionNumber) {
    m_announcedConnection = connectionNumber;
}

void LocalAvocadoManager::SendAvocadoInfo() const {
    const AvocadoInfo info(GetWords());
    m_client->sendData(MessageType::SetPersonalWords, &info);
}
