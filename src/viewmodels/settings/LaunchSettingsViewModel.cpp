#include "viewmodels/settings/LaunchSettingsViewModel.h"

#include "core/AppVariables.h"
#include "core/settings/HotkeySettings.h"
#include "core/settings/LaunchSettings.h"
#include "desktop/HotKeyManager.h"
#include "viewmodels/StoreProperty.h"

#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QThread>

#include <exception>

namespace {

/// The user may type a phrase as a sentence, of which only the words are ever heard.
QString normalizeCommand(QString text) {
    for (QChar &character : text) {
        if (!character.isLetter() && character.category() != QChar::Number_DecimalDigit)
            character = QLatin1Char(' ');
    }
    return text.simplified();
}

} // namespace

LaunchSettingsViewModel::LaunchSettingsViewModel(QObject *parent)
    : AppSettingsViewModel(tr("Запуск"), false, parent),
      m_installer(QDir(AppVariables::sm_stdVars.get(QStringLiteral("AppBinaryLocation"), QString()))
                      .filePath(QStringLiteral("install"))),
      m_globalEnableVAC(LaunchSettings().GlobalEnableVAC),
      m_isVACSettingsVisible(m_globalEnableVAC) {}

void LaunchSettingsViewModel::set_IsHotKey(bool v) {
    if (storeProperty(this, &m_isHotKey, v, &LaunchSettingsViewModel::changed_IsHotKey))
        emit changed_IsPushToTalk(!v);
}

void LaunchSettingsViewModel::Load() {
    using Self = LaunchSettingsViewModel;
    loadAutoStart();
    const LaunchSettings settings;
    setVoiceFlags(settings.VoiceActivationEnabled, settings.VoiceDeactivationEnabled);
    storeProperty(this, &m_voiceActivationCommand, settings.VoiceActivationCommand.get(),
                  &Self::changed_VoiceActivationCommand);
    storeProperty(this, &m_voiceDeactivationCommand, settings.VoiceDeactivationCommand.get(),
                  &Self::changed_VoiceDeactivationCommand);
    storeProperty(this, &m_isWriteToControl, settings.OutputToBackground.get(),
                  &Self::changed_IsWriteToControl);
    AppSettingsViewModel::Load();
    // Last, as a key that there is not ends the loading.
    loadHotKeys();
}

bool LaunchSettingsViewModel::get_IsHotKeysAvaliable() const {
    return HotKeyManager::getHotkeyManager()->IsInitialized();
}

void LaunchSettingsViewModel::loadAutoStart() {
    const QFileInfo installer(m_installer);
    storeProperty(this, &m_isAutoStartEnabled, installer.isFile() && installer.isExecutable(),
                  &LaunchSettingsViewModel::changed_IsAutoStartEnabled);
    m_loadedAutoStart =
        m_isAutoStartEnabled && QProcess::execute(m_installer, {QStringLiteral("query")}) == 0;
    storeProperty(this, &m_isAutoStart, m_loadedAutoStart,
                  &LaunchSettingsViewModel::changed_IsAutoStart);
}

void LaunchSettingsViewModel::loadHotKeys() {
    const HotkeySettings settings;
    set_IsHotKey(settings.UseHotkey);
    // Of two keys the one that is known is to be shown, or the next storing would lose it.
    std::exception_ptr failure;
    try {
        m_hotKeys.setValue(Enum<Hotkey>::FromInvariantString(settings.HotKey));
    } catch (const ConveterException &) {
        failure = std::current_exception();
    }
    m_push2TalkKeys.setValue(Enum<Push2TalkKey>::FromInvariantString(settings.P2TKey));
    if (failure)
        std::rethrow_exception(failure);
}

void LaunchSettingsViewModel::Apply() {
    AppSettingsViewModel::Apply();
    const bool haveHotKeysChanged = applyHotKeys();
    if (applyLaunch() || haveHotKeysChanged)
        emit activationChanged();
    if (haveHotKeysChanged)
        emit hotKeysChanged();
    applyAutoStart();
}

bool LaunchSettingsViewModel::applyHotKeys() {
    HotkeySettings settings;
    settings.UseHotkey = m_isHotKey;
    settings.HotKey = Enum<Hotkey>::Values[m_hotKeys.value()]->get_InvariantName();
    settings.P2TKey = Enum<Push2TalkKey>::Values[m_push2TalkKeys.value()]->get_InvariantName();
    settings.sync();
    return settings.changed;
}

bool LaunchSettingsViewModel::applyLaunch() {
    LaunchSettings settings;
    if (m_isVACSettingsVisible) {
        settings.VoiceActivationEnabled = m_isVoiceActivationEnabled;
        settings.VoiceActivationCommand = normalizeCommand(m_voiceActivationCommand);
        settings.VoiceDeactivationEnabled = m_isVoiceDeactivationEnabled;
        settings.VoiceDeactivationCommand = normalizeCommand(m_voiceDeactivationCommand);
        settings.VoiceActivationEnabledBalancer = m_isVoiceActivationEnabled;
        settings.VoiceDeactivationEnabledBalancer = m_isVoiceDeactivationEnabled;
    }
    settings.OutputToBackground = m_isWriteToControl;
    settings.sync();
    return settings.changed;
}

void LaunchSettingsViewModel::applyAutoStart() {
    if (m_isAutoStart == m_loadedAutoStart)
        return;
    const QString wish = m_isAutoStart ? QStringLiteral("autorun") : QStringLiteral("noautorun");
    const int code = QProcess::execute(m_installer, {wish});
    if (code != 0)
        qWarning().noquote() << m_installer << wish << "has failed with code" << code;
    m_loadedAutoStart = m_isAutoStart;
}

void LaunchSettingsViewModel::VACSettingsVisibleChanged(bool enableVAC, bool receivedFromBalancer) {
    if (QThread::currentThread() == thread()) {
        takeOverVacState(enableVAC, receivedFromBalancer);
        return;
    }
    QMetaObject::invokeMethod(this, [this, enableVAC, receivedFromBalancer] {
        takeOverVacState(enableVAC, receivedFromBalancer);
    });
}

void LaunchSettingsViewModel::takeOverVacState(bool enableVAC, bool receivedFromBalancer) {
    const bool wasVisible = m_isVACSettingsVisible;
    const bool isVisible = receivedFromBalancer ? enableVAC : m_globalEnableVAC;
    if (receivedFromBalancer && isVisible != wasVisible)
        emit vacSettingsVisibleChanged(isVisible);
    m_isVACSettingsVisible = isVisible;
    LaunchSettings settings;
    settings.VoiceActivationEnabled =
        isVisible && (settings.VoiceActivationEnabled || settings.VoiceActivationEnabledBalancer);
    settings.VoiceDeactivationEnabled = isVisible && (settings.VoiceDeactivationEnabled ||
                                                      settings.VoiceDeactivationEnabledBalancer);
    // A switch of this machine's own is only for now, one of the balancer's is for good.
    if (!isVisible && receivedFromBalancer) {
        settings.VoiceActivationEnabledBalancer = false;
        settings.VoiceDeactivationEnabledBalancer = false;
    }
    settings.sync();
    // Each answer of the balancer's leads here. One that changes nothing must leave a dictation
    // alone, which ends at this signal, and what the user is about to choose on the page.
    if (!settings.changed && isVisible == wasVisible)
        return;
    setVoiceFlags(settings.VoiceActivationEnabled, settings.VoiceDeactivationEnabled);
    if (settings.changed)
        emit activationChanged();
    if (isVisible != wasVisible)
        emit changed_IsVACSettingsVisible(isVisible);
}

void LaunchSettingsViewModel::setVoiceFlags(bool activation, bool deactivation) {
    using Self = LaunchSettingsViewModel;
    storeProperty(this, &m_isVoiceActivationEnabled, activation,
                  &Self::changed_IsVoiceActivationEnabled);
    storeProperty(this, &m_isVoiceDeactivationEnabled, deactivation,
                  &Self::changed_IsVoiceDeactivationEnabled);
}
