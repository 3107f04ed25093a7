#include "commands/LaunchManager.h"

#include "core/settings/ClientInfoSettings.h"
#include "core/settings/LaunchSettings.h"
#include "recognition/AsrManager.h"

#include <algorithm>

LaunchManager::LaunchManager(AsrManager *asrManager) : m_asrManager(asrManager) {
    LaunchSettings settings;
    if (!settings.GlobalEnableVAC) {
        settings.VoiceActivationEnabled = false;
        settings.VoiceDeactivationEnabled = false;
        settings.sync();
    }
    updateSettings();
}

void LaunchManager::updateSettings() {
    clearCommands();
    const LaunchSettings settings;
    const QString desktopId = ClientInfoSettings().getOrCreateDesktopId();
    if (settings.VoiceActivationEnabled) {
        m_executableCommands.append(CommandInfo(QStringLiteral("vac_") + desktopId,
                                                settings.VoiceActivationCommand,
                                                CommandType::VoiceActivation));
    }
    if (settings.VoiceDeactivationEnabled) {
        m_executableCommands.append(CommandInfo(QStringLiteral("vdc_") + desktopId,
                                                settings.VoiceDeactivationCommand,
                                                CommandType::VoiceDeactivation));
    }
    m_asrManager->setIsVoiceActivationEnabled(settings.VoiceActivationEnabled);
    emit commandsChanged();
}

void LaunchManager::startVoiceActivation() const {
    // While a connection opens, the target mode follows as the last of its messages anyway.
    if (!m_asrManager->isOpen())
        return;
    const auto mode = m_asrManager->getTargetModeInfo()->mode();
    if (!mode || *mode < RecognitionMode::Text)
        m_asrManager->startUninteractiveMode();
}

void LaunchManager::onCommandsRefreshed() const {
    startVoiceActivation();
}

QString LaunchManager::executeCommand(const CommandInfo &command) const {
    const auto isThis = [&command](const CommandInfo &own) { return own.id() == command.id(); };
    if (std::none_of(m_executableCommands.cbegin(), m_executableCommands.cend(), isThis))
        return QString();
    switch (command.type()) {
    case CommandType::VoiceActivation:
        m_asrManager->startRecognition();
        break;
    case CommandType::VoiceDeactivation:
        m_asrManager->stopRecognition();
        break;
    case CommandType::User:
        break;
    }
    return QString();
}
