#pragma once

#include "tts/TtsStateInfo.h"
#include "viewmodels/AppSettingsViewModel.h"

#include <QStringList>

class TtsManager;

/// The page "Синтез": the voice in which the server speaks, and its rate. Main thread.
class SynthesisSettingsViewModel : public AppSettingsViewModel {
    Q_OBJECT
    Q_PROPERTY(QStringList Voices READ get_Voices NOTIFY changed_Voices)
    /// -1 for none.
    Q_PROPERTY(int SelectedVoiceIndex MEMBER m_selectedVoiceIndex NOTIFY changed_SelectedVoiceIndex)
    /// 1.0 is the voice's own rate.
    Q_PROPERTY(double TTSSpeed MEMBER m_ttsSpeed NOTIFY changed_TTSSpeed)
    /// The user wants speech, and the server can speak.
    Q_PROPERTY(
        bool IsTtsEnabled READ get_IsTtsEnabled WRITE set_IsTtsEnabled NOTIFY changed_IsTtsEnabled)
    Q_PROPERTY(QString ErrorMessage MEMBER m_errorMessage NOTIFY changed_ErrorMessage)

public:
    explicit SynthesisSettingsViewModel(QObject *parent = nullptr);

    /// @param ttsManager  not owned, outlives the use of this object
    void set_TtsManager(TtsManager *ttsManager) { m_ttsManager = ttsManager; }

    /// Asks for the voices, which come later.
    void Load() override;
    void Apply() override;

    QStringList get_Voices() const { return m_voices; }
    bool get_IsTtsEnabled() const { return m_isTtsEnabled && m_isTtsAvailable; }
    /// Changes the user's wish. A view whose switch shows it is told where that is not the value.
    void set_IsTtsEnabled(bool v);

public slots:
    void OnTtsStateChanged(const TtsStateInfo &state);

signals:
    void changed_Voices();
    void changed_SelectedVoiceIndex(int v);
    void changed_TTSSpeed(double v);
    void changed_IsTtsEnabled(bool v);
    void changed_ErrorMessage(const QString &v);
    void ttsSettingsChanged();

private:
    void enableTts(bool isWanted, bool isAvailable);
    void offerVoices(const QStringList &voices, int selected);

    TtsManager *m_ttsManager = nullptr;
    QStringList m_voices;
    int m_selectedVoiceIndex = -1;
    double m_ttsSpeed = 1.0;
    /// The user's own setting; what stands in the server's way is not stored.
    bool m_isTtsEnabled = false;
    bool m_isTtsAvailable = true;
    QString m_errorMessage;
};
