#pragma once

#include "commands/UserCommandType.h"
#include "viewmodels/commands/CommandsCollectionViewModel.h"

#include <QMap>
#include <QStringList>
#include <QVariant>

class UserCommandsManager;

/// The window "Автозамена": every command of the user's, by dictionary and type. Nothing is stored
/// before applyCommand(). Main thread.
class CommandsViewModel : public QObject {
    Q_OBJECT
    Q_PROPERTY(QVariant CommandTypes READ get_CommandTypes CONSTANT)
    /// The type that is shown, by its place in CommandTypes.
    Q_PROPERTY(int typeIndex READ get_typeIndex WRITE set_typeIndex NOTIFY changed_typeIndex)
    /// Names of the dictionaries; the first stands for all.
    Q_PROPERTY(QStringList Themes READ get_Themes NOTIFY changed_Themes)
    Q_PROPERTY(int ThemeIndex READ get_ThemeIndex WRITE set_ThemeIndex NOTIFY changed_ThemeIndex)
    Q_PROPERTY(QVariant CommandSetList READ get_CommandSetList NOTIFY changed_CommandSetList)
    Q_PROPERTY(QString HeaderText READ get_HeaderText CONSTANT)
    /// Why the last applyCommand() failed, for the user.
    Q_PROPERTY(QString ErrorText READ get_ErrorText NOTIFY changed_ErrorText)

public:
    explicit CommandsViewModel(QObject *parent = nullptr);

    /// @param manager  not owned, outlives the use of this object
    void set_UserCommandsManager(UserCommandsManager *manager) { m_manager = manager; }
    void set_CommandTypes(const QList<UserCommandNamespace::UserCommandType> &types) {
        m_commandTypes = types;
    }

    QVariant get_CommandTypes() const;
    int get_typeIndex() const { return m_typeIndex; }
    void set_typeIndex(int index);
    QStringList get_Themes() const { return m_themes; }
    int get_ThemeIndex() const { return m_themeIndex; }
    void set_ThemeIndex(int index);
    QVariant get_CommandSetList() const;
    QString get_HeaderText() const { return tr("Автозамена"); }
    QString get_ErrorText() const { return m_errorText; }

    /// The first row of this phrase in this dictionary, in the order of the types; null if there is
    /// none.
    UserCommandViewModel *findCommand(const QString &themeId, const QString &pattern) const;

    /// Reads all commands; may wait for the server's dictionaries.
    Q_INVOKABLE void onLoad();
    Q_INVOKABLE void onClose();
    /// Stores the commands of all dictionaries.
    /// @return whether that worked
    Q_INVOKABLE bool applyCommand();
    Q_INVOKABLE void cancelCommand() {}

signals:
    void changed_typeIndex(int v);
    void changed_Themes();
    void changed_ThemeIndex(int v);
    void changed_CommandSetList();
    void changed_ErrorText(const QString &v);
    void commandsChanged();

private:
    void clear();
    void createCollections();
    void loadTheme(const QString &themeId);
    void onChangedSelectedTheme();
    void save();
    void reportFailure(const QString &reason);

    UserCommandsManager *m_manager = nullptr;
    QList<UserCommandNamespace::UserCommandType> m_commandTypes;
    int m_typeIndex = 0;
    QStringList m_themes;
    /// Beside m_themes.
    QStringList m_themeIds;
    int m_themeIndex = 0;
    QMap<UserCommandNamespace::UserCommandType, CommandsCollectionViewModel *> m_collections;
    QString m_errorText;
};
