#include "commands/UserCommandsManager.h"

#include "commands/CommandFile.h"
#include "commands/FileCopyCommandExecutor.h"
#include "commands/HotKeyCommandExecutor.h"
#include "commands/ProcessCommandExecutor.h"
#include "core/AppVariables.h"
#include "recognition/AsrManager.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMutexLocker>
#include <QUuid>

#include <algorithm>

using UserCommandNamespace::UserCommandType;

namespace {

const auto directoryName = QStringLiteral("commands");
const auto allThemesFileName = QStringLiteral("default.json");
/// Of a copy that does not count as a command file.
const auto foreignSuffix = QStringLiteral(".bak");

/// The folder of the user's files, which is made if it is not there.
QDir enterCommandsFolder() {
    QDir folder(AppVariables::sm_stdVars.get(QStringLiteral("AppLocalDataLocation"), {}));
    folder.mkpath(directoryName);
    const QDir parent = folder;
    // What cannot be listed would count as empty, and the next save would take its place.
    if (!folder.cd(directoryName) || !folder.isReadable()) {
        throw Exception(QStringLiteral("Directory '%1' at path '%2' doesn't exist")
                            .arg(directoryName, parent.absolutePath()));
    }
    return folder;
}

QString fileNameOf(const QString &themeId) {
    if (themeId.isEmpty())
        return allThemesFileName;
    // The id is the server's choice: none may lead out of the folder, and no two share a file.
    QString safeId;
    for (const QChar ch : themeId) {
        if (ch == QLatin1Char('/') || ch == QLatin1Char('%') ||
            ch.category() == QChar::Other_Control)
            safeId += QStringLiteral("%%1").arg(ch.unicode(), 2, 16, QLatin1Char('0'));
        else
            safeId += ch;
    }
    return QStringLiteral("theme_") + safeId + QStringLiteral(".json");
}

void removeCopy(const QString &path) {
    if (!QFile::remove(path))
        qWarning().noquote() << "Cannot remove the copy" << path;
}

/// Gives an id to every executable command that has none.
/// @return whether there was one
bool completeIds(QList<UserCommand> *commands) {
    bool hasChanged = false;
    for (UserCommand &command : *commands) {
        if (command.Type == UserCommandType::Text || !command.Id.isEmpty())
            continue;
        command.Id = QUuid::createUuid().toString();
        hasChanged = true;
    }
    return hasChanged;
}

/// Of commands with the same phrase the last one stays, in the place of the first.
QList<UserCommand> mergeDuplicates(const QList<UserCommand> &commands) {
    QList<UserCommand> merged;
    QHash<QString, int> places;
    for (const UserCommand &command : commands) {
        const QString pattern = command.get_NormalizedPattern();
        const auto place = places.constFind(pattern);
        if (place == places.constEnd()) {
            places.insert(pattern, merged.size());
            merged.append(command);
        } else {
            merged[*place] = command;
        }
    }
    return merged;
}

void mergeAndOrder(QList<UserCommand> *commands) {
    *commands = mergeDuplicates(*commands);
    std::stable_partition(commands->begin(), commands->end(),
                          [](const UserCommand &command) { return command.IsSystem; });
}

/// Of the file's content; empty without a file.
QByteArray hashOf(const QString &path) {
    QFile file(path);
    QCryptographicHash hash(QCryptographicHash::Sha256);
    return file.open(QIODevice::ReadOnly) && hash.addData(&file) ? hash.result() : QByteArray();
}

ClientThemeInfo allThemes() {
    ClientThemeInfo theme;
    theme.setName(QObject::tr("Для всех словарей"));
    return theme;
}

} // namespace

UserCommandsManager::UserCommandsManager() {
    m_executors[UserCommandType::Exe] = std::make_unique<ProcessCommandExecutor>();
    m_executors[UserCommandType::Key] = std::make_unique<HotKeyCommandExecutor>();
    m_executors[UserCommandType::FileCopy] = std::make_unique<FileCopyCommandExecutor>();
}

UserCommandsManager::~UserCommandsManager() = default;

void UserCommandsManager::LoadAll() {
    const QDir folder = enterCommandsFolder();
    const QDir programFolder(AppVariables::sm_stdVars.get(QStringLiteral("AppBinaryLocation"), {}));
    QMap<QString, ClientThemeInfo> themes{{QString(), ClientThemeInfo()}};
    QMap<QString, QList<UserCommand>> commands{
        {QString(),
         LoadFrom(programFolder.filePath(QStringLiteral("autoreplaces.json")), nullptr, true)}};
    const QFileInfoList files =
        folder.entryInfoList({QStringLiteral("*.json")}, QDir::Files, QDir::Name);
    for (const QFileInfo &file : files) {
        if (file.isReadable())
            loadUserFile(folder.filePath(file.fileName()), &themes, &commands);
        else
            qWarning() << "Command file cannot be read:" << file.filePath();
    }
    for (QList<UserCommand> &list : commands)
        mergeAndOrder(&list);
    themes[QString()] = allThemes();
    {
        const QMutexLocker locker(&m_mutex);
        m_knownThemes = themes;
        m_commands = commands;
        m_storedThemes.clear();
        offerAllThemesOnly();
    }
    updateCommands();
}

void UserCommandsManager::loadUserFile(const QString &path, QMap<QString, ClientThemeInfo> *themes,
                                       QMap<QString, QList<UserCommand>> *commands) {
    ClientThemeInfo theme;
    // Before it is read: what is written meanwhile is another program's.
    QByteArray hash = hashOf(path);
    QList<UserCommand> loaded = LoadFrom(path, &theme, false);
    if (completeIds(&loaded)) {
        SaveTo(path, theme, loaded);
        hash = hashOf(path);
    }
    m_files.insert(path, {hash, theme.id()});
    if (!themes->contains(theme.id()))
        themes->insert(theme.id(), theme);
    (*commands)[theme.id()] += loaded;
}

void UserCommandsManager::offerAllThemesOnly() {
    m_offeredThemes.clear();
    m_offeredThemes.insert(QString(), m_knownThemes.value(QString()));
}

QList<UserCommand> UserCommandsManager::LoadFrom(const QString &path, ClientThemeInfo *theme,
                                                 bool isSystem) {
    return CommandFile::read(path, theme, isSystem);
}

void UserCommandsManager::SaveTo(const QString &path, const ClientThemeInfo &theme,
                                 const QList<UserCommand> &commands) {
    CommandFile::write(path, theme, commands);
}

void UserCommandsManager::Save(const ClientThemeInfo &theme, const QList<UserCommand> &commands) {
    const QString path = enterCommandsFolder().filePath(fileNameOf(theme.id()));
    QList<UserCommand> own;
    std::copy_if(commands.cbegin(), commands.cend(), std::back_inserter(own),
                 [](const UserCommand &command) { return !command.IsSystem; });
    const StoredFile former = m_files.value(path);
    const QString copy = keepFormerFile(path, theme.id());
    try {
        if (!own.isEmpty())
            SaveTo(path, theme, own);
        else if (!QFile::remove(path) && QFile::exists(path))
            throw Exception(
                QStringLiteral("UserCommandsManager: Cannot remove file '%1'").arg(path));
    } catch (...) {
        if (!copy.isEmpty())
            removeCopy(copy);
        throw;
    }
    if (copy.endsWith(foreignSuffix)) {
        emit CommandFileKept(
            tr("Файл «%1» изменила другая программа. Её версия сохранена: «%2»").arg(path, copy));
    } else if (!copy.isEmpty()) {
        m_files.insert(copy, former);
        if (!copy.endsWith(QLatin1Char('/') + fileNameOf(former.themeId)))
            m_copies.insert(former.themeId, copy);
    }
    m_files.insert(path, {hashOf(path), theme.id()});
    m_storedThemes.insert(theme.id());
    const QStringList outdated = m_copies.values(theme.id());
    for (const QString &file : outdated) {
        if (hashOf(file) == m_files.take(file).hash)
            removeCopy(file);
        else
            qWarning().noquote() << "Changed by another program, left in place:" << file;
    }
    m_copies.remove(theme.id());
    updateCommands();
}

QString UserCommandsManager::keepFormerFile(const QString &path, const QString &themeId) {
    if (!QFileInfo(path).isFile())
        return {};
    const QByteArray hash = hashOf(path);
    const StoredFile stored = m_files.value(path);
    const bool isForeign = hash.isEmpty() || hash != stored.hash;
    if (!isForeign && (stored.themeId == themeId || m_storedThemes.contains(stored.themeId)))
        return {};
    // The commands of another dictionary are to count at the next start as well.
    QString copy = QFileInfo(path).dir().filePath(fileNameOf(stored.themeId));
    if (isForeign || QFile::exists(copy)) {
        copy = path +
               QDateTime::currentDateTime().toString(QStringLiteral(".yyyyMMdd-hhmmss-zzz")) +
               (isForeign ? foreignSuffix : QStringLiteral(".json"));
    }
    if (!QFile::copy(path, copy))
        throw Exception(QStringLiteral("UserCommandsManager: Cannot keep file '%1'").arg(path));
    qWarning().noquote() << (isForeign ? "Changed by another program:" : "Of another dictionary:")
                         << path << "is kept as" << copy;
    return copy;
}

void UserCommandsManager::set_Commands(const QMap<QString, QList<UserCommand>> &commands) {
    QMap<QString, QList<UserCommand>> former;
    bool isAnyStored = false;
    try {
        const QList<ClientThemeInfo> themes = replaceCommands(commands, &former);
        for (const ClientThemeInfo &theme : themes) {
            Save(theme, commands.value(theme.id()));
            former.remove(theme.id());
            isAnyStored = true;
        }
    } catch (...) {
        // What is not stored does not count either.
        QMap<QString, QList<UserCommand>> ignored;
        replaceCommands(former, &ignored);
        updateCommands();
        if (isAnyStored)
            emit CommandsChanged();
        throw;
    }
    emit CommandsChanged();
}

QList<ClientThemeInfo>
UserCommandsManager::replaceCommands(const QMap<QString, QList<UserCommand>> &commands,
                                     QMap<QString, QList<UserCommand>> *former) {
    const QMutexLocker locker(&m_mutex);
    QList<ClientThemeInfo> themes;
    for (auto entry = commands.cbegin(); entry != commands.cend(); ++entry) {
        const auto theme = m_knownThemes.constFind(entry.key());
        if (theme == m_knownThemes.constEnd()) {
            throw Exception(
                QStringLiteral("UserCommandsManager: Theme %1 not found").arg(entry.key()));
        }
        former->insert(entry.key(), m_commands.value(entry.key()));
        m_commands.insert(entry.key(), entry.value());
        themes.append(*theme);
    }
    return themes;
}

QList<UserCommand> UserCommandsManager::get_ThemeCommands(const QString &themeId) const {
    const QMutexLocker locker(&m_mutex);
    return m_commands.value(themeId);
}

QList<UserCommand> UserCommandsManager::getCommandList() const {
    QList<UserCommand> commands = get_ThemeCommands(QString());
    const QString themeId = m_asrManager->getSelectedTheme().id();
    if (!themeId.isEmpty())
        commands += get_ThemeCommands(themeId);
    return commands;
}

QList<ClientThemeInfo> UserCommandsManager::get_Themes() const {
    const QMutexLocker locker(&m_mutex);
    return m_offeredThemes.values();
}

void UserCommandsManager::UpdateThemesFromAsr() {
    QList<ClientThemeInfo> themes;
    try {
        themes = m_asrManager->get_Themes(false);
    } catch (const std::exception &error) {
        // Without a server only the commands for all dictionaries can be edited.
        qDebug() << "No dictionaries:" << error.what();
    }
    const QMutexLocker locker(&m_mutex);
    offerAllThemesOnly();
    for (const ClientThemeInfo &theme : qAsConst(themes)) {
        m_knownThemes.insert(theme.id(), theme);
        m_offeredThemes.insert(theme.id(), theme);
        m_commands[theme.id()];
    }
}

QList<UserCommandType> UserCommandsManager::get_CommandTypes() const {
    return {UserCommandType::Text, UserCommandType::Key, UserCommandType::Exe,
            UserCommandType::FileCopy};
}

void UserCommandsManager::updateCommands() {
    clearCommands();
    const QList<UserCommand> commands = getCommandList();
    for (const UserCommand &command : commands) {
        if (command.Type != UserCommandType::Text)
            m_executableCommands.append(
                CommandInfo(command.Id, command.Pattern, CommandType::User));
    }
    emit commandsChanged();
}

QString UserCommandsManager::executeCommand(const CommandInfo &info) const {
    const QList<UserCommand> commands = getCommandList();
    const auto command =
        std::find_if(commands.cbegin(), commands.cend(),
                     [&info](const UserCommand &own) { return own.Id == info.id(); });
    return command == commands.cend() ? QString() : executeUserCommand(*command);
}

QString UserCommandsManager::executeUserCommand(const UserCommand &command) const {
    const auto executor = m_executors.find(command.Type);
    if (executor == m_executors.cend())
        return QString();
    const CommandResult result = executor->second->Execute(command);
    if (!result.error().isEmpty())
        emit CommandExecutionError(result.error());
    return result.result();
}
