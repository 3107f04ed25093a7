#include "viewmodels/settings/SynthesisSettingsViewModel.h"

#include "core/settings/TTSSettings.h"
#include "tts/TtsManager.h"
#include "viewmodels/StoreProperty.h"

SynthesisSettingsViewModel::SynthesisSettingsViewModel(QObject *parent)
    : AppSettingsViewModel(tr("Синтез"), true, parent) {}

void SynthesisSettingsViewModel::Load() {
    AppSettingsViewModel::Load();
    const TTSSettings settings;
    enableTts(settings.IsTtsEnabled, true);
    storeProperty(this, &m_ttsSpeed, settings.Speed.get(),
                  &SynthesisSettingsViewModel::changed_TTSSpeed);
    if (m_ttsManager)
        m_ttsManager->reloadTtsState();
    else
        offerVoices({}, -1);
}

void SynthesisSettingsViewModel::OnTtsStateChanged(const TtsStateInfo &state) {
    QStringList voices;
    const QList<VoiceInfo> offered = state.voiceList();
    for (const VoiceInfo &voice : offered)
        voices << voice.name();
    const int stored = voices.indexOf(TTSSettings().Voice);
    offerVoices(voices, stored < 0 && !voices.isEmpty() ? 0 : stored);
    if (state.state() == 0) {
        storeProperty(this, &m_errorMessage, QString(),
                      &SynthesisSettingsViewModel::changed_ErrorMessage);
        enableTts(m_isTtsEnabled, true);
    } else if (state.state() == 1) {
        storeProperty(this, &m_errorMessage, tr("Ошибка инициализации TTS"),
                      &SynthesisSettingsViewModel::changed_ErrorMessage);
        enableTts(m_isTtsEnabled, false);
    }
}

void SynthesisSettingsViewModel::set_IsTtsEnabled(bool v) {
    enableTts(v, m_isTtsAvailable);
    if (get_IsTtsEnabled() != v)
        emit changed_IsTtsEnabled(!v);
}

void SynthesisSettingsViewModel::enableTts(bool isWanted, bool isAvailable) {
    const bool before = get_IsTtsEnabled();
    m_isTtsEnabled = isWanted;
    m_isTtsAvailable = isAvailable;
    if (get_IsTtsEnabled() != before)
        emit changed_IsTtsEnabled(!before);
}

void SynthesisSettingsViewModel::offerVoices(const QStringList &voices, int selected) {
    m_voices = voices;
    emit changed_Voices();
    m_selectedVoiceIndex = selected;
    // Also when it is the same: a view that has begun again at its first row is to go back.
    emit changed_SelectedVoiceIndex(selected);
}

void SynthesisSettingsViewModel::Apply() {
    AppSettingsViewModel::Apply();
    TTSSettings settings;
    // Before the server has told its voices, the user has not chosen none.
    const QString voice =
        m_voices.isEmpty() ? settings.Voice.get() : m_voices.value(m_selectedVoiceIndex);
    if (settings.saveTtsSettings(voice, m_isTtsEnabled, m_ttsSpeed))
        emit ttsSettingsChanged();
}
