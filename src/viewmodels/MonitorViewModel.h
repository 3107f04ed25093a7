#pragma once

#include "recognition/RecognitionMode.h"

#include <QObject>
#include <QRect>
#include <QString>
#include <QWindow>

class AsrManager;
class ConnectionManager;
class RecordingDeviceManager;
class ResultManager;

/// What the monitor shows: the microphone's level, the state of recognition, the gain, the name of
/// the dictionary, and the text that is being recognised.
///
/// Lives on the main thread. Setters store and signal only a change.
class MonitorViewModel : public QObject {
    Q_OBJECT
    /// The square is on screen.
    Q_PROPERTY(bool Visible READ Visible WRITE set_Visible NOTIFY changed_Visible)
    /// Level of the microphone, 0 to 100.
    Q_PROPERTY(int SoundLevel READ SoundLevel WRITE set_SoundLevel NOTIFY changed_SoundLevel)
    /// A mode is going on or off.
    Q_PROPERTY(bool Loading READ Loading WRITE set_Loading NOTIFY changed_Loading)
    /// Input volume in percent; setting it stores it.
    Q_PROPERTY(int Gain READ gain WRITE setGain NOTIFY changedGain)
    Q_PROPERTY(bool GainVisible READ GainVisible WRITE set_GainVisible NOTIFY changed_GainVisible)
    Q_PROPERTY(
        bool ThemeVisible READ ThemeVisible WRITE set_ThemeVisible NOTIFY changed_ThemeVisible)
    /// Name and version of the dictionary, empty if none is selected.
    Q_PROPERTY(QString ThemeName READ ThemeName WRITE set_ThemeName NOTIFY changed_ThemeName)
    /// The whole partial text; it may be megabytes long.
    Q_PROPERTY(QString ResultText READ ResultText WRITE set_ResultText NOTIFY changed_ResultText)
    /// The end of ResultText, more than a tooltip can show.
    Q_PROPERTY(QString ResultTail READ ResultTail NOTIFY changed_ResultText)
    /// The window of this program that has the focus.
    Q_PROPERTY(QWindow *ActiveWindow READ ActiveWindow)
    /// The tooltip stands over the window that is dictated into.
    Q_PROPERTY(
        bool TooltipOnInputWindow READ TooltipOnInputWindow NOTIFY changed_TooltipOnInputWindow)
    /// That window's rectangle, in the coordinates that Qt places windows in.
    Q_PROPERTY(QRect InputWindowRect READ InputWindowRect NOTIFY changed_InputWindowRect)
    /// Colour of the splash window's description.
    Q_PROPERTY(QString DescColor READ DescColor WRITE set_DescColor NOTIFY changed_DescColor)
    /// Height of the splash window's logo, device-independent pixels.
    Q_PROPERTY(int LogoHeight READ LogoHeight WRITE set_LogoHeight NOTIFY changed_LogoHeight)
    /// Which of the two windows lets the user choose a dictionary at start.
    Q_PROPERTY(bool AlternateThemeView READ AlternateThemeView WRITE set_AlternateThemeView NOTIFY
                   changed_AlternateThemeView)

public:
    /// The collaborators are not owned and outlive this object.
    MonitorViewModel(AsrManager *asrManager, ResultManager *resultManager,
                     RecordingDeviceManager *recordingDevice, ConnectionManager *connectionManager);

    bool Visible() const { return m_visible; }
    int SoundLevel() const { return m_soundLevel; }
    bool Loading() const { return m_loading; }
    int gain() const { return m_gain; }
    bool GainVisible() const { return m_gainVisible; }
    bool ThemeVisible() const { return m_themeVisible; }
    QString ThemeName() const { return m_themeName; }
    QString ResultText() const { return m_resultText; }
    QString ResultTail() const;
    QWindow *ActiveWindow() const;
    bool TooltipOnInputWindow() const { return m_tooltipOnInputWindow; }
    QRect InputWindowRect() const { return m_inputWindowRect; }
    QString DescColor() const { return m_descColor; }
    int LogoHeight() const { return m_logoHeight; }
    bool AlternateThemeView() const { return m_alternateThemeView; }

    void set_Visible(bool v);
    void set_SoundLevel(int v);
    void set_Loading(bool v);
    void setGain(int gain);
    void set_GainVisible(bool v);
    void set_ThemeVisible(bool v);
    void set_ThemeName(const QString &v);
    void set_ResultText(const QString &v);
    void set_DescColor(const QString &v);
    void set_LogoHeight(int v);
    void set_AlternateThemeView(bool v);

    /// Ends the dictation.
    Q_INVOKABLE void closeCommand();

public slots:
    void RecordingLevelChanged(int level);
    void GainChanged(int gain);
    /// May be called on any thread.
    void asrStateChanged(RecognitionMode mode, AsrState state);
    void refreshThemeName();
    void resultReady(const QString &text, bool isFinal);

signals:
    void changed_Visible(bool v);
    void changed_SoundLevel(int v);
    void changed_Loading(bool v);
    void changedGain(int gain);
    void changed_GainVisible(bool v);
    void changed_ThemeVisible(bool v);
    void changed_ThemeName(const QString &v);
    void changed_ResultText(const QString &v);
    void changed_TooltipOnInputWindow(bool v);
    void changed_InputWindowRect(const QRect &v);
    void changed_DescColor(const QString &v);
    void changed_LogoHeight(int v);
    void changed_AlternateThemeView(bool v);

private:
    template <typename T>
    using Signal = void (MonitorViewModel::*)(T);

    void placeTooltip();
    void setPopup(bool *field, bool v, Signal<bool> changed);
    void hideAll();

    AsrManager *m_asrManager;
    ResultManager *m_resultManager;
    RecordingDeviceManager *m_recordingDevice;
    ConnectionManager *m_connectionManager;
    bool m_visible = false;
    int m_soundLevel = 0;
    bool m_loading = false;
    int m_gain;
    bool m_gainVisible = false;
    bool m_themeVisible = false;
    QString m_themeName;
    QString m_resultText;
    bool m_tooltipOnInputWindow = false;
    QRect m_inputWindowRect;
    QString m_descColor;
    int m_logoHeight;
    bool m_alternateThemeView;
};
