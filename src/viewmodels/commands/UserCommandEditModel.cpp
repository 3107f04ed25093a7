#include "viewmodels/commands/UserCommandEditModel.h"

UserCommandEditModel::UserCommandEditModel(UserCommandViewModel *command,
                                           CommandsCollectionViewModel *collection)
    : m_command(command),
      m_collection(collection),
      m_themeId(command ? command->get_Theme() : collection->selectedTheme()),
      m_type(collection->type()) {}

bool UserCommandEditModel::isTaken(const QString &pattern) const {
    // As it would be stored: blanks that are dropped then make no other phrase.
    const UserCommandViewModel *found =
        m_collection ? m_collection->findCommand(m_themeId, pattern.simplified()) : nullptr;
    return found && found != m_command;
}

void UserCommandEditModel::apply() {
    // The window may have been closed behind the dialog.
    if (!m_collection)
        return;
    if (!m_command) {
        m_command = new UserCommandViewModel(m_type, m_themeId, m_collection);
        m_collection->addNew(m_command);
    }
    copyTo(m_command);
}
