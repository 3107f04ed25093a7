#pragma once

#include "viewmodels/AppSettingsViewModel.h"
#include "viewmodels/themes/ThemeChooseViewModel.h"

/// The page "Распознавание": dictionary, punctuation, capitals. Main thread.
class RecognitionSettingsViewModel : public AppSettingsViewModel {
    Q_OBJECT
    Q_PROPERTY(ThemeChooseViewModel *ThemeChooseViewModel READ get_ThemeChooseViewModel CONSTANT)
    Q_PROPERTY(bool SendingMode MEMBER m_sendingMode NOTIFY changed_SendingMode)
    Q_PROPERTY(bool CapitalLetterAfterStart MEMBER m_capitalLetterAfterStart NOTIFY
                   changed_CapitalLetterAfterStart)
    Q_PROPERTY(bool UsePunctuation MEMBER m_usePunctuation NOTIFY changed_UsePunctuation)
    /// Whether the user is offered UsePunctuation.
    Q_PROPERTY(
        bool PunctuationEnabled READ get_PunctuationEnabled NOTIFY changed_PunctuationEnabled)
    Q_PROPERTY(
        bool CanEditAvocadoWords MEMBER m_canEditAvocadoWords NOTIFY changed_CanEditAvocadoWords)
    /// Whether the user is offered CanEditAvocadoWords.
    Q_PROPERTY(bool CanEnableAvocado READ get_CanEnableAvocado NOTIFY changed_CanEnableAvocado)
    /// Device-independent pixels.
    Q_PROPERTY(int LogoHeight READ get_LogoHeight NOTIFY changed_LogoHeight)
    Q_PROPERTY(bool ThemeSelectEnabled READ get_ThemeSelectEnabled CONSTANT)
    Q_PROPERTY(bool IsThemeAutoSelect MEMBER m_isThemeAutoSelect NOTIFY changed_IsThemeAutoSelect)

public:
    explicit RecognitionSettingsViewModel(QObject *parent = nullptr);

    void Load() override;
    void Apply() override;

    ThemeChooseViewModel *get_ThemeChooseViewModel() { return &m_themeChooser; }
    bool get_PunctuationEnabled() const { return m_punctuationEnabled; }
    bool get_CanEnableAvocado() const { return m_canEnableAvocado; }
    int get_LogoHeight() const { return m_logoHeight; }
    bool get_ThemeSelectEnabled() const { return m_themeSelectEnabled; }

signals:
    void changed_SendingMode(bool v);
    void changed_CapitalLetterAfterStart(bool v);
    void changed_UsePunctuation(bool v);
    void changed_PunctuationEnabled(bool v);
    void changed_CanEditAvocadoWords(bool v);
    void changed_CanEnableAvocado(bool v);
    void changed_LogoHeight(int v);
    void changed_IsThemeAutoSelect(bool v);
    /// Another dictionary is stored.
    void selectedThemeChanged();
    /// What the server or the replacements are to know is stored.
    void recognitionSettingsChanged();
    void canEditAvocadoChanged(bool value);

private:
    ThemeChooseViewModel m_themeChooser;
    bool m_sendingMode = false;
    bool m_capitalLetterAfterStart = true;
    bool m_usePunctuation = false;
    bool m_punctuationEnabled = false;
    bool m_canEditAvocadoWords = false;
    bool m_canEnableAvocado = false;
    int m_logoHeight = 40;
    const bool m_themeSelectEnabled;
    bool m_isThemeAutoSelect = false;
};
