#pragma once

#include "commands/ExecutableCommandsSource.h"
#include "commands/UserCommand.h"
#include "themes/ClientThemeInfo.h"

#include <QByteArray>
#include <QHash>
#include <QMap>
#include <QMutex>
#include <QSet>

#include <map>
#include <memory>

class AsrManager;
class UserCommandExecutor;

/// Owns every user command of this machine, by dictionary; the id "" stands for the commands that
/// hold for all dictionaries. Offers the executable ones of those in force to the server, and
/// carries them out.
///
/// Lives on the main thread; the lists may be read from any thread.
class UserCommandsManager : public ExecutableCommandsSource {
    Q_OBJECT

public:
    UserCommandsManager();
    ~UserCommandsManager() override;

    /// To be called once, before LoadAll().
    /// @param asrManager  not owned, outlives the use of this object
    void set_AsrManager(AsrManager *asrManager) { m_asrManager = asrManager; }

    /// Builds everything from the files.
    /// @throws Exception  a file cannot be read or written, or is garbled; what was there stays
    void LoadAll();
    /// Reads one file.
    /// @param theme  if given, takes the id and the name of the file's dictionary
    /// @throws Exception  the file cannot be read, or is garbled
    static QList<UserCommand> LoadFrom(const QString &path, ClientThemeInfo *theme, bool isSystem);
    /// Replaces one file in one step.
    /// @throws Exception  the file cannot be written; the old one stays whole
    static void SaveTo(const QString &path, const ClientThemeInfo &theme,
                       const QList<UserCommand> &commands);
    /// Stores the user's commands among these; without any, their file goes.
    /// @throws Exception  as SaveTo()
    void Save(const ClientThemeInfo &theme, const QList<UserCommand> &commands);

    /// Replaces the lists of the given dictionaries and saves them.
    /// @throws Exception  a dictionary is not known, or a file cannot be written
    void set_Commands(const QMap<QString, QList<UserCommand>> &commands);
    /// Empty for a dictionary that is not known.
    QList<UserCommand> get_ThemeCommands(const QString &themeId) const;
    /// The commands in force now.
    QList<UserCommand> getCommandList() const;
    /// What the user can have commands for: all dictionaries, and those that the server offers.
    QList<ClientThemeInfo> get_Themes() const;
    /// Asks the server for its dictionaries, for as long as that takes.
    void UpdateThemesFromAsr();
    QList<UserCommandNamespace::UserCommandType> get_CommandTypes() const;

    QString executeCommand(const CommandInfo &command) const override;
    void onCommandsRefreshed() const override {}

public slots:
    /// Rebuilds the list of what is offered to the server.
    void updateCommands();

signals:
    /// Another program has changed a file that is being replaced; the message tells the user where
    /// its version is kept.
    void CommandFileKept(QString message);
    /// The editors' lists are stored and saved.
    void CommandsChanged();
    void CommandExecutionError(QString errorText) const;

private:
    void loadUserFile(const QString &path, QMap<QString, ClientThemeInfo> *themes,
                      QMap<QString, QList<UserCommand>> *commands);
    /// Puts the lists in place of those of their dictionaries, which it keeps in former, up to the
    /// first dictionary that is not known.
    /// @return the dictionaries
    QList<ClientThemeInfo> replaceCommands(const QMap<QString, QList<UserCommand>> &commands,
                                           QMap<QString, QList<UserCommand>> *former);
    /// What a file held when it was read or written last, and for which dictionary.
    struct StoredFile {
        QByteArray hash;
        QString themeId;
    };

    /// Keeps a copy of the file beside it if this program did not leave it so, or if it holds the
    /// commands of another dictionary than the one whose commands are to replace it, which are
    /// stored nowhere else.
    /// @return the copy's path, or an empty text
    /// @throws Exception  what would be lost cannot be read or copied
    QString keepFormerFile(const QString &path, const QString &themeId);
    /// To be called under the lock.
    void offerAllThemesOnly();
    QString executeUserCommand(const UserCommand &command) const;

    AsrManager *m_asrManager = nullptr;
    /// Guards the three maps; never held while a file is written.
    mutable QRecursiveMutex m_mutex;
    QMap<QString, ClientThemeInfo> m_knownThemes;
    QMap<QString, ClientThemeInfo> m_offeredThemes;
    QMap<QString, QList<UserCommand>> m_commands;
    QHash<QString, StoredFile> m_files;
    /// The dictionaries whose whole lists have been stored since they were read.
    QSet<QString> m_storedThemes;
    /// Copies that hold a dictionary's commands until these are stored under its own name.
    QMultiHash<QString, QString> m_copies;
    std::map<UserCommandNamespace::UserCommandType, std::unique_ptr<UserCommandExecutor>>
        m_executors;
};
