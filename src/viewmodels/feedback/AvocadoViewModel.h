#pragma once

#include "connection/messages/UserNotification.h"
#include "viewmodels/ValidatableText.h"

class AsrManager;
class LocalAvocadoManager;

/// The window in which the user edits the list of personal words. Main thread.
class AvocadoViewModel : public QObject {
    Q_OBJECT
    Q_PROPERTY(ValidatableText *AvocadoWords READ get_AvocadoWords NOTIFY changed_AvocadoWords)
    /// The window may close without a question.
    Q_PROPERTY(bool IsCloseConfirmed MEMBER m_isCloseConfirmed NOTIFY changed_IsCloseConfirmed)
    Q_PROPERTY(QString Tooltip MEMBER m_tooltip NOTIFY changed_Tooltip)
    Q_PROPERTY(bool CanSave READ get_CanSave NOTIFY changed_CanSave)

public:
    /// @param asrManager           not owned, outlives this object
    /// @param localAvocadoManager  not owned, outlives this object
    AvocadoViewModel(AsrManager *asrManager, LocalAvocadoManager *localAvocadoManager);

    /// To be called each time that the window opens.
    Q_INVOKABLE void onLoad();
    /// Stores and sends the list, if it has changed, and tells the user.
    Q_INVOKABLE void applyCommand();
    /// Asks whether a changed list may be dropped.
    /// @return whether the window may close
    Q_INVOKABLE bool cancelCommand();

    ValidatableText *get_AvocadoWords() { return &m_words; }
    bool get_CanSave() const { return m_words.get_IsValid(); }

public slots:
    void isValidChanged(bool isValid);

signals:
    void changed_AvocadoWords();
    void changed_IsCloseConfirmed(bool v);
    void changed_Tooltip(const QString &v);
    void changed_CanSave(bool enabled);
    void notifyUser(const UserNotification &notification);

private:
    static void ValidateAvocadoWords(ValidatableText::ValidationArgs *args);
    void updateWords();

    AsrManager *m_asrManager;
    LocalAvocadoManager *m_localAvocadoManager;
    ValidatableText m_words{this};
    /// The list as shown when the window opened.
    QString m_openingText;
    bool m_isCloseConfirmed = false;
    QString m_tooltip;
};
