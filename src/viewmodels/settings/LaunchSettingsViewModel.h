#pragma once

#include "desktop/Hotkey.h"
#include "viewmodels/AppSettingsViewModel.h"
#include "viewmodels/EnumModel.h"

/// The page "Запуск": how the program and dictation are started. Main thread;
/// VACSettingsVisibleChanged() may be called from any thread.
class LaunchSettingsViewModel : public AppSettingsViewModel {
    Q_OBJECT
    /// Start with the user's session, and whether that can be offered.
    Q_PROPERTY(bool IsAutoStart MEMBER m_isAutoStart NOTIFY changed_IsAutoStart)
    Q_PROPERTY(
        bool IsAutoStartEnabled READ get_IsAutoStartEnabled NOTIFY changed_IsAutoStartEnabled)
    Q_PROPERTY(bool IsHotKey READ get_IsHotKey WRITE set_IsHotKey NOTIFY changed_IsHotKey)
    Q_PROPERTY(
        bool IsPushToTalk READ get_IsPushToTalk WRITE set_IsPushToTalk NOTIFY changed_IsPushToTalk)
    Q_PROPERTY(EnumModelBase *HotKeys READ get_HotKeys CONSTANT)
    Q_PROPERTY(EnumModelBase *Push2TalkKeys READ get_Push2TalkKeys CONSTANT)
    Q_PROPERTY(QString VoiceActivationCommand MEMBER m_voiceActivationCommand NOTIFY
                   changed_VoiceActivationCommand)
    Q_PROPERTY(QString VoiceDeactivationCommand MEMBER m_voiceDeactivationCommand NOTIFY
                   changed_VoiceDeactivationCommand)
    Q_PROPERTY(bool IsVoiceActivationEnabled MEMBER m_isVoiceActivationEnabled NOTIFY
                   changed_IsVoiceActivationEnabled)
    Q_PROPERTY(bool IsVoiceDeactivationEnabled MEMBER m_isVoiceDeactivationEnabled NOTIFY
                   changed_IsVoiceDeactivationEnabled)
    Q_PROPERTY(bool GlobalEnableVAC READ get_GlobalEnableVAC CONSTANT)
    /// Whether the user is offered to start and stop by voice.
    Q_PROPERTY(
        bool IsVACSettingsVisible READ get_IsVACSettingsVisible NOTIFY changed_IsVACSettingsVisible)
    /// Results go on to the window that had the focus when dictation began.
    Q_PROPERTY(bool IsWriteToControl MEMBER m_isWriteToControl NOTIFY changed_IsWriteToControl)
    Q_PROPERTY(bool IsHotKeysAvaliable READ get_IsHotKeysAvaliable CONSTANT)

public:
    explicit LaunchSettingsViewModel(QObject *parent = nullptr);

    /// @throws ConveterException  the settings name a key that there is not
    void Load() override;
    /// May wait for the helper that writes the session's autostart entry.
    void Apply() override;

    bool get_IsAutoStartEnabled() const { return m_isAutoStartEnabled; }
    bool get_IsHotKey() const { return m_isHotKey; }
    void set_IsHotKey(bool v);
    bool get_IsPushToTalk() const { return !m_isHotKey; }
    void set_IsPushToTalk(bool v) { set_IsHotKey(!v); }
    EnumModel<Hotkey> *get_HotKeys() { return &m_hotKeys; }
    EnumModel<Push2TalkKey> *get_Push2TalkKeys() { return &m_push2TalkKeys; }
    bool get_GlobalEnableVAC() const { return m_globalEnableVAC; }
    bool get_IsVACSettingsVisible() const { return m_isVACSettingsVisible; }
    /// Whether the keyboard is listened to. Settled once the program has started.
    bool get_IsHotKeysAvaliable() const;

public slots:
    /// Takes over whether voice may start and stop dictation. Nothing is signalled if nothing
    /// changes. A call from another thread takes effect later.
    /// @param receivedFromBalancer  false: the balancer told nothing, the local switch counts
    void VACSettingsVisibleChanged(bool enableVAC, bool receivedFromBalancer);

signals:
    void changed_IsAutoStart(bool v);
    void changed_IsAutoStartEnabled(bool v);
    void changed_IsHotKey(bool v);
    void changed_IsPushToTalk(bool v);
    void changed_VoiceActivationCommand(const QString &v);
    void changed_VoiceDeactivationCommand(const QString &v);
    void changed_IsVoiceActivationEnabled(bool v);
    void changed_IsVoiceDeactivationEnabled(bool v);
    void changed_IsVACSettingsVisible(bool v);
    void changed_IsWriteToControl(bool v);
    void hotKeysChanged();
    void activationChanged();
    void vacSettingsVisibleChanged(bool vacVisible);

private:
    void loadAutoStart();
    void loadHotKeys();
    void applyAutoStart();
    bool applyHotKeys();
    bool applyLaunch();
    void takeOverVacState(bool enableVAC, bool receivedFromBalancer);
    void setVoiceFlags(bool activation, bool deactivation);

    const QString m_installer;
    bool m_isAutoStart = false;
    bool m_loadedAutoStart = false;
    bool m_isAutoStartEnabled = false;
    bool m_isHotKey = true;
    EnumModel<Hotkey> m_hotKeys{this};
    EnumModel<Push2TalkKey> m_push2TalkKeys{this};
    QString m_voiceActivationCommand;
    QString m_voiceDeactivationCommand;
    bool m_isVoiceActivationEnabled = false;
    bool m_isVoiceDeactivationEnabled = false;
    const bool m_globalEnableVAC;
    bool m_isVACSettingsVisible;
    bool m_isWriteToControl = false;
};
