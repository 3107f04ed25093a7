#pragma once

#include "commands/ExecutableCommandsSource.h"

class AsrManager;

/// The two commands that start and stop recognition by voice. Main thread.
class LaunchManager : public ExecutableCommandsSource {
    Q_OBJECT

public:
    /// @param asrManager  not owned, outlives this object
    explicit LaunchManager(AsrManager *asrManager);

    /// Enters the idle mode with the present commands, unless a dictation is wanted.
    void startVoiceActivation() const;

    QString executeCommand(const CommandInfo &command) const override;
    void onCommandsRefreshed() const override;

public slots:
    /// Rebuilds the two commands from the settings.
    void updateSettings();

private:
    AsrManager *m_asrManager;
};
