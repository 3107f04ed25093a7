#pragma once

#include "formapi/FormMetadata.h"
#include "recognition/RecognitionMode.h"
#include "themes/ClientThemeInfo.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QList>
#include <QMutex>
#include <QObject>

#include <optional>

/// What the client wants the server to do, kept across reconnections. Safe from any thread; reads
/// give copies.
class TargetModeInfo : public QObject {
    Q_OBJECT

public:
    std::optional<RecognitionMode> mode() const;
    std::optional<FormMetadata> form() const;
    /// The key of the form element in focus.
    std::optional<QString> formElement() const;
    QString themeId() const;
    /// True until the first BackupTargetMode.
    bool isEmpty() const;

    void setMode(std::optional<RecognitionMode> mode);
    void setForm(const std::optional<FormMetadata> &form);
    void setFormElement(const std::optional<QString> &element);
    void setThemeId(const QString &themeId);
    void setIsEmpty(bool isEmpty);
    /// The X window of the current dictation, 0 for none.
    void setWindowHandle(unsigned long handle);

    /// The mode to (re)start: a remembered dictation, or the idle mode of the present settings.
    std::optional<RecognitionMode> getTargetMode();
    /// getTargetMode() together with the form and its element.
    std::optional<RecognitionMode> getTargetModeInfo(std::optional<FormMetadata> *form,
                                                     std::optional<QString> *element);

    /// Remembers a new target; the window of the dictation is forgotten.
    void BackupTargetMode(std::optional<RecognitionMode> mode,
                          const std::optional<FormMetadata> &form,
                          const std::optional<QString> &element, const QString &themeId);
    /// Remembers the element, while the target is a form mode.
    void BackupTargetElement(const QString &element);
    void ResetTargetMode();

    // These change the remembered form, while the target is a form mode.
    void UpdateTargetCommandSet(const QJsonArray &commands);
    void UpdateTargetFormSettings(const QJsonObject &settings);
    /// Also keeps the dictionary itself, whatever the mode.
    void UpdateTargetTheme(const QString &themeId);

    void UpdateTargetHandles(unsigned long handle);
    /// @return whether a window is known
    bool GetTargetHandles(unsigned long *handle) const;

    /// Looks for the dictionary that the target wants.
    /// @param found  set on a hit, left alone where no particular dictionary is wanted
    /// @return false if one is wanted that is not among the themes
    bool FindTargetTheme(const QList<ClientThemeInfo> &themes,
                         std::optional<ClientThemeInfo> *found) const;

private:
    bool hasForm() const;
    QString wantedThemeId() const;

    std::optional<FormMetadata> m_form;
    std::optional<QString> m_formElement;
    std::optional<RecognitionMode> m_mode;
    QString m_themeId;
    bool m_isEmpty = true;
    mutable QRecursiveMutex m_mutex;
    unsigned long m_windowHandle = 0;
};
