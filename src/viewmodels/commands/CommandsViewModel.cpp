#include "viewmodels/commands/CommandsViewModel.h"

#include "commands/UserCommandsManager.h"
#include "viewmodels/StoreProperty.h"

#include <QDebug>

#include <algorithm>

using UserCommandNamespace::UserCommandType;

CommandsViewModel::CommandsViewModel(QObject *parent) : QObject(parent) {
    connect(this, &CommandsViewModel::changed_ThemeIndex, this,
            &CommandsViewModel::onChangedSelectedTheme);
    connect(this, &CommandsViewModel::changed_Themes, this,
            &CommandsViewModel::onChangedSelectedTheme);
}

QVariant CommandsViewModel::get_CommandTypes() const {
    QVariantList types;
    for (const UserCommandType type : m_commandTypes)
        types << static_cast<int>(type);
    return types;
}

void CommandsViewModel::set_typeIndex(int index) {
    storeProperty(this, &m_typeIndex, index, &CommandsViewModel::changed_typeIndex);
}

void CommandsViewModel::set_ThemeIndex(int index) {
    storeProperty(this, &m_themeIndex, index, &CommandsViewModel::changed_ThemeIndex);
}

QVariant CommandsViewModel::get_CommandSetList() const {
    QList<QObject *> collections;
    for (const UserCommandType type : m_commandTypes) {
        if (CommandsCollectionViewModel *collection = m_collections.value(type))
            collections << collection;
    }
    return QVariant::fromValue(collections);
}

void CommandsViewModel::onLoad() {
    clear();
    m_manager->UpdateThemesFromAsr();
    QList<ClientThemeInfo> themes = m_manager->get_Themes();
    std::stable_sort(themes.begin(), themes.end(),
                     [](const ClientThemeInfo &left, const ClientThemeInfo &right) {
                         if (left.themeId().isEmpty() || right.themeId().isEmpty())
                             return left.themeId().isEmpty() && !right.themeId().isEmpty();
                         return left.name() < right.name();
                     });
    createCollections();
    for (const ClientThemeInfo &theme : qAsConst(themes)) {
        m_themes << theme.name();
        m_themeIds << theme.id();
        loadTheme(theme.id());
    }
    emit changed_Themes();
    emit changed_CommandSetList();
    // Makes the view load its tabs anew.
    set_typeIndex(1);
    set_typeIndex(0);
}

void CommandsViewModel::createCollections() {
    for (const UserCommandType type : qAsConst(m_commandTypes))
        m_collections.insert(type, new CommandsCollectionViewModel(type, this));
}

void CommandsViewModel::loadTheme(const QString &themeId) {
    QMap<UserCommandType, QList<UserCommandViewModel *>> rows;
    const QList<UserCommand> commands = m_manager->get_ThemeCommands(themeId);
    for (const UserCommand &command : commands) {
        if (CommandsCollectionViewModel *collection = m_collections.value(command.Type))
            rows[command.Type] << new UserCommandViewModel(command, themeId, collection);
    }
    for (auto entry = rows.cbegin(); entry != rows.cend(); ++entry)
        m_collections[entry.key()]->addAll(entry.value());
}

void CommandsViewModel::onChangedSelectedTheme() {
    for (CommandsCollectionViewModel *collection : qAsConst(m_collections))
        collection->selectTheme(m_themeIds.value(m_themeIndex));
}

UserCommandViewModel *CommandsViewModel::findCommand(const QString &themeId,
                                                     const QString &pattern) const {
    const QString wanted = UserCommand::NormalizePattern(pattern);
    for (const UserCommandType type : m_commandTypes) {
        const CommandsCollectionViewModel *collection = m_collections.value(type);
        if (!collection)
            continue;
        const QList<UserCommandViewModel *> rows = collection->get_CommandSet(themeId);
        for (UserCommandViewModel *row : rows) {
            if (UserCommand::NormalizePattern(row->get_Pattern()) == wanted)
                return row;
        }
    }
    return nullptr;
}

bool CommandsViewModel::applyCommand() {
    try {
        save();
        return true;
    } catch (const std::exception &error) {
        reportFailure(QString::fromUtf8(error.what()));
    } catch (...) {
        reportFailure(QStringLiteral("unknown exception"));
    }
    return false;
}

void CommandsViewModel::save() {
    QMap<QString, QList<UserCommand>> commands;
    for (const QString &themeId : qAsConst(m_themeIds)) {
        QList<UserCommand> &ofTheme = commands[themeId];
        for (const CommandsCollectionViewModel *collection : qAsConst(m_collections)) {
            const QList<UserCommandViewModel *> rows = collection->get_CommandSet(themeId);
            for (const UserCommandViewModel *row : rows)
                ofTheme << row->get_UserCommand();
        }
    }
    m_manager->set_Commands(commands);
    emit commandsChanged();
}

void CommandsViewModel::reportFailure(const QString &reason) {
    qWarning().noquote() << "Error in CommandsViewModel::applyCommand: " + reason;
    storeProperty(this, &m_errorText, tr("Не удалось сохранить: %1").arg(reason),
                  &CommandsViewModel::changed_ErrorText);
}

void CommandsViewModel::onClose() {
    clear();
}

void CommandsViewModel::clear() {
    m_themes.clear();
    m_themeIds.clear();
    storeProperty(this, &m_errorText, QString(), &CommandsViewModel::changed_ErrorText);
    const auto former = std::exchange(m_collections, {});
    for (CommandsCollectionViewModel *collection : former) {
        collection->clear();
        collection->deleteLater();
    }
    set_ThemeIndex(0);
    set_typeIndex(0);
    emit changed_CommandSetList();
}
