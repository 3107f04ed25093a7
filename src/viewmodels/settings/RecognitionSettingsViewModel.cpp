#include "viewmodels/settings/RecognitionSettingsViewModel.h"

#include "core/AppVariables.h"
#include "core/settings/ASRSettings.h"
#include "viewmodels/StoreProperty.h"

RecognitionSettingsViewModel::RecognitionSettingsViewModel(QObject *parent)
    : AppSettingsViewModel(tr("Распознавание"), true, parent),
      m_themeSelectEnabled(AppVariables::buildFlag(QStringLiteral("ThemeSelectEnabled"))) {
    addPage(&m_themeChooser);
}

void RecognitionSettingsViewModel::Load() {
    using Self = RecognitionSettingsViewModel;
    const ASRSettings settings;
    storeProperty(this, &m_sendingMode, settings.SendingMode.get(), &Self::changed_SendingMode);
    storeProperty(this, &m_capitalLetterAfterStart, settings.CapitalLetterAfterStart.get(),
                  &Self::changed_CapitalLetterAfterStart);
    storeProperty(this, &m_usePunctuation, settings.UsePunctuation.get(),
                  &Self::changed_UsePunctuation);
    storeProperty(this, &m_punctuationEnabled, settings.PunctuationEnabled.get(),
                  &Self::changed_PunctuationEnabled);
    storeProperty(this, &m_canEditAvocadoWords, settings.CanEditAvocadoWords.get(),
                  &Self::changed_CanEditAvocadoWords);
    storeProperty(this, &m_isThemeAutoSelect, settings.IsThemeAutoSelect.get(),
                  &Self::changed_IsThemeAutoSelect);
    if (AppVariables::buildFlag(QStringLiteral("CanEnableAvocado")))
        storeProperty(this, &m_canEnableAvocado, true, &Self::changed_CanEnableAvocado);
    bool isNumber = false;
    const int logoHeight = AppVariables::buildProperty("LogoHeight").toInt(&isNumber);
    if (isNumber)
        storeProperty(this, &m_logoHeight, logoHeight, &Self::changed_LogoHeight);
    AppSettingsViewModel::Load();
}

void RecognitionSettingsViewModel::Apply() {
    AppSettingsViewModel::Apply();
    const ThemeInfoViewModel *theme = m_themeChooser.get_SelectedTheme();
    ASRSettings settings;
    settings.SelectedTheme = theme ? theme->get_Id() : QString();
    settings.SendingMode = m_sendingMode;
    settings.IsThemeAutoSelect = m_isThemeAutoSelect;
    settings.UsePunctuation = m_usePunctuation;
    settings.CanEditAvocadoWords = m_canEditAvocadoWords;
    if (settings.CanEditAvocadoWords.changed())
        emit canEditAvocadoChanged(m_canEditAvocadoWords);
    settings.CapitalLetterAfterStart = m_capitalLetterAfterStart;
    settings.sync();
    if (settings.SendingMode.changed() || settings.UsePunctuation.changed() ||
        settings.CanEditAvocadoWords.changed())
        emit recognitionSettingsChanged();
    if (settings.SelectedTheme.changed())
        emit selectedThemeChanged();
}
