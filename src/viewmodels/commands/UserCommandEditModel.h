#pragma once

#include "viewmodels/commands/CommandsCollectionViewModel.h"

#include <QPointer>

/// What one edit dialog works on: a new command, or one that there is. The command changes at
/// apply() only. Main thread.
class UserCommandEditModel : public QObject {
    Q_OBJECT

public:
    /// @param command     null for a new one
    /// @param collection  the tab that the dialog belongs to, not owned
    UserCommandEditModel(UserCommandViewModel *command, CommandsCollectionViewModel *collection);

    /// Checks the fields up to the first that is wrong, to which the view then goes.
    Q_INVOKABLE virtual bool validate() = 0;
    virtual void copyTo(UserCommandViewModel *command) = 0;
    Q_INVOKABLE void apply();

protected:
    UserCommandViewModel *command() const { return m_command; }
    /// Whether another command of the dictionary has this phrase.
    bool isTaken(const QString &pattern) const;

private:
    QPointer<UserCommandViewModel> m_command;
    QPointer<CommandsCollectionViewModel> m_collection;
    const QString m_themeId;
    const UserCommandNamespace::UserCommandType m_type;
};
