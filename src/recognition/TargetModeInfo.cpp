#include "recognition/TargetModeInfo.h"

#include "core/settings/LaunchSettings.h"

#include <QJsonDocument>
#include <QMutexLocker>

#include <algorithm>

namespace {

bool isFormMode(std::optional<RecognitionMode> mode) {
    return mode && *mode >= RecognitionMode::TemplatedForm;
}

} // namespace

std::optional<RecognitionMode> TargetModeInfo::mode() const {
    const QMutexLocker locker(&m_mutex);
    return m_mode;
}

std::optional<FormMetadata> TargetModeInfo::form() const {
    const QMutexLocker locker(&m_mutex);
    return m_form;
}

std::optional<QString> TargetModeInfo::formElement() const {
    const QMutexLocker locker(&m_mutex);
    return m_formElement;
}

QString TargetModeInfo::themeId() const {
    const QMutexLocker locker(&m_mutex);
    return m_themeId;
}

bool TargetModeInfo::isEmpty() const {
    const QMutexLocker locker(&m_mutex);
    return m_isEmpty;
}

void TargetModeInfo::setMode(std::optional<RecognitionMode> mode) {
    const QMutexLocker locker(&m_mutex);
    m_mode = mode;
}

void TargetModeInfo::setForm(const std::optional<FormMetadata> &form) {
    const QMutexLocker locker(&m_mutex);
    m_form = form;
}

void TargetModeInfo::setFormElement(const std::optional<QString> &element) {
    const QMutexLocker locker(&m_mutex);
    m_formElement = element;
}

void TargetModeInfo::setThemeId(const QString &themeId) {
    const QMutexLocker locker(&m_mutex);
    m_themeId = themeId;
}

void TargetModeInfo::setIsEmpty(bool isEmpty) {
    const QMutexLocker locker(&m_mutex);
    m_isEmpty = isEmpty;
}

void TargetModeInfo::setWindowHandle(unsigned long handle) {
    const QMutexLocker locker(&m_mutex);
    m_windowHandle = handle;
}

std::optional<RecognitionMode> TargetModeInfo::getTargetMode() {
    const QMutexLocker locker(&m_mutex);
    if (m_isEmpty || (m_mode && *m_mode < RecognitionMode::Text)) {
        m_mode = LaunchSettings().VoiceActivationEnabled ? RecognitionMode::VoiceActivation
                                                         : RecognitionMode::Off;
    }
    return m_mode;
}

std::optional<RecognitionMode> TargetModeInfo::getTargetModeInfo(std::optional<FormMetadata> *form,
                                                                 std::optional<QString> *element) {
    const QMutexLocker locker(&m_mutex);
    *form = m_form;
    *element = m_formElement;
    return getTargetMode();
}

void TargetModeInfo::BackupTargetMode(std::optional<RecognitionMode> mode,
                                      const std::optional<FormMetadata> &form,
                                      const std::optional<QString> &element,
                                      const QString &themeId) {
    const QMutexLocker locker(&m_mutex);
    m_mode = mode;
    m_form = form;
    m_formElement = element;
    m_themeId = themeId;
    m_isEmpty = false;
    m_windowHandle = 0;
}

void TargetModeInfo::BackupTargetElement(const QString &element) {
    const QMutexLocker locker(&m_mutex);
    if (isFormMode(m_mode))
        m_formElement = element;
}

void TargetModeInfo::ResetTargetMode() {
    BackupTargetMode(std::nullopt, std::nullopt, std::nullopt, QString());
    setIsEmpty(true);
}

bool TargetModeInfo::hasForm() const {
    return isFormMode(m_mode) && m_form;
}

void TargetModeInfo::UpdateTargetCommandSet(const QJsonArray &commands) {
    const QMutexLocker locker(&m_mutex);
    if (hasForm())
        m_form->setFormCommands(commands);
}

void TargetModeInfo::UpdateTargetFormSettings(const QJsonObject &settings) {
    const QMutexLocker locker(&m_mutex);
    if (hasForm()) {
        m_form->setFormSettings(
            QString::fromUtf8(QJsonDocument(settings).toJson(QJsonDocument::Compact)));
    }
}

void TargetModeInfo::UpdateTargetTheme(const QString &themeId) {
    const QMutexLocker locker(&m_mutex);
    m_themeId = themeId;
    if (hasForm())
        m_form->setThemeId(themeId);
}

void TargetModeInfo::UpdateTargetHandles(unsigned long handle) {
    setWindowHandle(handle);
}

bool TargetModeInfo::GetTargetHandles(unsigned long *handle) const {
    const QMutexLocker locker(&m_mutex);
    *handle = m_windowHandle;
    return m_windowHandle != 0;
}

QString TargetModeInfo::wantedThemeId() const {
    if (isFormMode(m_mode))
        return m_form && !m_form->themeId().isEmpty() ? m_form->themeId() : m_themeId;
    return m_mode == RecognitionMode::Text ? m_themeId : QString();
}

bool TargetModeInfo::FindTargetTheme(const QList<ClientThemeInfo> &themes,
                                     std::optional<ClientThemeInfo> *found) const {
    const QMutexLocker locker(&m_mutex);
    const QString wanted = wantedThemeId();
    if (wanted.isEmpty())
        return true;
    const auto theme =
        std::find_if(themes.cbegin(), themes.cend(),
                     [&wanted](const ClientThemeInfo &info) { return info.id() == wanted; });
    if (theme == themes.cend())
        return false;
    *found = *theme;
    return true;
}
