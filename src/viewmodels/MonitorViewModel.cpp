#include "viewmodels/MonitorViewModel.h"

#include "audio/RecordingDeviceManager.h"
#include "connection/ConnectionManager.h"
#include "core/AppVariables.h"
#include "desktop/NativeGeometry.h"
#include "desktop/TextWriter.h"
#include "recognition/AsrManager.h"
#include "recognition/ResultManager.h"
#include "viewmodels/StoreProperty.h"

#include <QDebug>
#include <QGuiApplication>
#include <QTextBoundaryFinder>
#include <QThread>

namespace {

/// More characters than three lines of a tooltip can hold.
constexpr int tailLength = 500;

} // namespace

MonitorViewModel::MonitorViewModel(AsrManager *asrManager, ResultManager *resultManager,
                                   RecordingDeviceManager *recordingDevice,
                                   ConnectionManager *connectionManager)
    : m_asrManager(asrManager),
      m_resultManager(resultManager),
      m_recordingDevice(recordingDevice),
      m_connectionManager(connectionManager),
      m_gain(recordingDevice->Gain()),
      m_descColor(AppVariables::buildProperty("SplashTextColor")),
      m_logoHeight(AppVariables::buildProperty("SplashLogoHeight").toInt()),
      m_alternateThemeView(
          AppVariables::buildFlag(QStringLiteral("AlternateThemeSelectionWindow"))) {
    refreshThemeName();
    connect(m_recordingDevice, &RecordingDeviceManager::CurrentLevelChanged, this,
            &MonitorViewModel::RecordingLevelChanged);
    connect(m_recordingDevice, &RecordingDeviceManager::GainChanged, this,
            &MonitorViewModel::GainChanged);
    connect(m_asrManager, &AsrManager::currentModeOrStateChanged, this,
            &MonitorViewModel::asrStateChanged, Qt::DirectConnection);
    connect(m_asrManager, &AsrManager::selectedThemeChanged, this,
            &MonitorViewModel::refreshThemeName);
    connect(m_resultManager, &ResultManager::resultReady, this, &MonitorViewModel::resultReady);
}

void MonitorViewModel::set_Visible(bool v) {
    storeProperty(this, &m_visible, v, &MonitorViewModel::changed_Visible);
}

void MonitorViewModel::set_SoundLevel(int v) {
    storeProperty(this, &m_soundLevel, v, &MonitorViewModel::changed_SoundLevel);
}

void MonitorViewModel::set_Loading(bool v) {
    storeProperty(this, &m_loading, v, &MonitorViewModel::changed_Loading);
}

void MonitorViewModel::set_GainVisible(bool v) {
    setPopup(&m_gainVisible, v, &MonitorViewModel::changed_GainVisible);
}

void MonitorViewModel::set_ThemeVisible(bool v) {
    setPopup(&m_themeVisible, v, &MonitorViewModel::changed_ThemeVisible);
}

void MonitorViewModel::setPopup(bool *field, bool v, Signal<bool> changed) {
    const bool wasOpen = m_gainVisible || m_themeVisible;
    if (v && !wasOpen)
        m_resultManager->keepFocusedWindow(true);
    storeProperty(this, field, v, changed);
    if (wasOpen && !m_gainVisible && !m_themeVisible)
        m_resultManager->keepFocusedWindow(false);
}

void MonitorViewModel::set_ThemeName(const QString &v) {
    storeProperty(this, &m_themeName, v, &MonitorViewModel::changed_ThemeName);
}

void MonitorViewModel::set_ResultText(const QString &v) {
    storeProperty(this, &m_resultText, v, &MonitorViewModel::changed_ResultText);
}

void MonitorViewModel::set_DescColor(const QString &v) {
    storeProperty(this, &m_descColor, v, &MonitorViewModel::changed_DescColor);
}

void MonitorViewModel::set_LogoHeight(int v) {
    storeProperty(this, &m_logoHeight, v, &MonitorViewModel::changed_LogoHeight);
}

void MonitorViewModel::set_AlternateThemeView(bool v) {
    storeProperty(this, &m_alternateThemeView, v, &MonitorViewModel::changed_AlternateThemeView);
}

QString MonitorViewModel::ResultTail() const {
    if (m_resultText.size() <= tailLength)
        return m_resultText;
    // A character with its marks stays whole; what lies before the cut tells where it begins.
    constexpr int context = 20;
    const int from = qMax(0, m_resultText.size() - tailLength - context);
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, m_resultText.constData() + from,
                               m_resultText.size() - from);
    finder.setPosition(m_resultText.size() - tailLength - from);
    if (!finder.isAtBoundary())
        finder.toNextBoundary();
    return m_resultText.mid(from + finder.position());
}

QWindow *MonitorViewModel::ActiveWindow() const {
    return QGuiApplication::focusWindow();
}

void MonitorViewModel::RecordingLevelChanged(int level) {
    set_SoundLevel(level);
}

void MonitorViewModel::setGain(int gain) {
    if (m_gain == gain)
        return;
    // Stored first: the device answers with GainChanged, which must find nothing new.
    m_gain = gain;
    m_recordingDevice->set_Gain(gain);
    m_recordingDevice->SaveSettings();
    emit changedGain(gain);
}

void MonitorViewModel::GainChanged(int gain) {
    setGain(gain);
}

void MonitorViewModel::asrStateChanged(RecognitionMode mode, AsrState state) {
    if (QThread::currentThread() != thread()) {
        QMetaObject::invokeMethod(
            this, [this, mode, state] { asrStateChanged(mode, state); }, Qt::QueuedConnection);
        return;
    }
    if (mode < RecognitionMode::Text)
        return;
    switch (state) {
    case AsrState::Starting:
        qDebug() << "AsrState::Starting";
        set_Loading(true);
        break;
    case AsrState::Started:
        qDebug() << "AsrState::Started";
        set_Loading(false);
        set_Visible(true);
        break;
    case AsrState::Stopping:
        qDebug() << "AsrState::Stopping";
        set_Loading(true);
        break;
    case AsrState::Stopped:
        qDebug() << "AsrState::Stopped";
        hideAll();
        break;
    }
}

void MonitorViewModel::hideAll() {
    set_Visible(false);
    set_ResultText(QString());
    set_GainVisible(false);
    set_ThemeVisible(false);
}

void MonitorViewModel::closeCommand() {
    m_asrManager->stopRecognition();
}

void MonitorViewModel::refreshThemeName() {
    const ClientThemeInfo theme = m_asrManager->getSelectedTheme();
    set_ThemeName(theme.id().isEmpty() ? QString()
                                       : theme.name() + QLatin1Char(' ') + theme.version());
}

void MonitorViewModel::resultReady(const QString &text, bool isFinal) {
    // What is final stands in the window that it was dictated for.
    if (isFinal) {
        set_ResultText(QString());
        return;
    }
    placeTooltip();
    set_ResultText(text);
}

void MonitorViewModel::placeTooltip() {
    const unsigned long window = m_resultManager->getResultWindow();
    QRect rect;
    if (!window || !TextWriter::GetWindowRect(window, &rect)) {
        storeProperty(this, &m_tooltipOnInputWindow, false,
                      &MonitorViewModel::changed_TooltipOnInputWindow);
        return;
    }
    m_tooltipOnInputWindow = true;
    m_inputWindowRect = fromNative(rect);
    emit changed_TooltipOnInputWindow(true);
    emit changed_InputWindowRect(m_inputWindowRect);
}
