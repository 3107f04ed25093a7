#include "commands/AutoReplaceManager.h"

#include "commands/UserCommandsManager.h"
#include "recognition/AsrManager.h"

void AutoReplaceManager::set_Managers(AsrManager *asrManager,
                                      UserCommandsManager *commandsManager) {
    m_asrManager = asrManager;
    m_commandsManager = commandsManager;
    connect(commandsManager, &UserCommandsManager::CommandsChanged, this,
            &AutoReplaceManager::RefreshAllTextCommands);
    connect(asrManager, &AsrManager::selectedThemeChanged, this,
            &AutoReplaceManager::asrThemeChanged);
    RefreshAllTextCommands();
}

QString AutoReplaceManager::ProcessText(const QString &text) const {
    return text;
}

QList<AutoReplaceManager::Entry> AutoReplaceManager::Process(const QString &) const {
    return {};
}

QList<AutoReplaceManager::Entry>
AutoReplaceManager::GetTextAndCommands(const QList<Entry> &entries) {
    return entries;
}

QRegularExpression AutoReplaceManager::CreateRegexp(const QString &pattern) {
    return QRegularExpression(pattern);
}

void AutoReplaceManager::RefreshAllTextCommands() {}
void AutoReplaceManager::asrThemeChanged() {}
void AutoReplaceManager::OnRecognitionSettingsChanged() {}
void AutoReplaceManager::AppendThemeCommands(const QString &) {}
