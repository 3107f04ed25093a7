#pragma once

#include "connection/RestAccessPoint.h"
#include "connection/messages/ClientClaim.h"
#include "connection/messages/UserNotification.h"
#include "viewmodels/themes/ThemeChooseViewModel.h"

class RecordingDeviceManager;

/// The form that reports a word which is recognised wrong. What is not sent stays as a draft. Main
/// thread; applyCommand() blocks it for one REST request.
class FeedbackViewModel : public QObject {
    Q_OBJECT
    Q_PROPERTY(QObject *ThemeChooseViewModel READ get_ThemeChooseViewModel CONSTANT)
    Q_PROPERTY(ValidatableText *FeedbackText READ get_FeedbackText CONSTANT)
    Q_PROPERTY(ValidatableText *Email READ get_Email CONSTANT)
    Q_PROPERTY(ValidatableText *FullName READ get_FullName CONSTANT)
    // Copies of the profile, never shown.
    Q_PROPERTY(QString RegionCode MEMBER m_regionCode NOTIFY changed_RegionCode)
    Q_PROPERTY(QString OrganisationFullName MEMBER m_organisationFullName NOTIFY
                   changed_OrganisationFullName)
    Q_PROPERTY(QString OrganisationFullOgrn MEMBER m_organisationFullOgrn NOTIFY
                   changed_OrganisationFullOgrn)
    Q_PROPERTY(
        QString OrganisationFullOid MEMBER m_organisationFullOid NOTIFY changed_OrganisationFullOid)
    Q_PROPERTY(QString Room MEMBER m_room NOTIFY changed_Room)
    Q_PROPERTY(
        bool UserConsentRequested MEMBER m_userConsentRequested NOTIFY changed_UserConsentRequested)
    /// The window may close without a question.
    Q_PROPERTY(bool IsCloseConfirmed MEMBER m_isCloseConfirmed NOTIFY changed_IsCloseConfirmed)
    Q_PROPERTY(QString Tooltip MEMBER m_tooltip NOTIFY changed_Tooltip)
    Q_PROPERTY(
        QString TooltipUserConsent MEMBER m_tooltipUserConsent NOTIFY changed_TooltipUserConsent)
    Q_PROPERTY(
        bool UserConsentVisible MEMBER m_userConsentVisible NOTIFY changed_UserConsentVisible)
    Q_PROPERTY(bool SendEnabled READ get_SendEnabled NOTIFY changed_SendEnabled)

public:
    /// @param asrManager       not owned, outlives this object
    /// @param recordingDevice  not owned, outlives this object
    FeedbackViewModel(AsrManager *asrManager, RecordingDeviceManager *recordingDevice);
    /// A program that ends while the form is open keeps its text as the draft.
    ~FeedbackViewModel() override;

    /// To be called each time that the window opens.
    Q_INVOKABLE void onLoad();
    /// Sends the message, or keeps it as the draft; the user is told which.
    Q_INVOKABLE void applyCommand();
    /// Asks what is to become of a text that is not the draft.
    /// @return whether the window may close
    Q_INVOKABLE bool cancelCommand();
    /// Announces whether the message can be sent.
    Q_INVOKABLE void isValid();

    ThemeChooseViewModel *get_ThemeChooseViewModel() { return &m_themeChooser; }
    ValidatableText *get_FeedbackText() { return &m_feedbackText; }
    ValidatableText *get_Email() { return &m_email; }
    ValidatableText *get_FullName() { return &m_fullName; }
    bool get_SendEnabled();

public slots:
    void isValidChanged(bool isValid);

signals:
    void changed_RegionCode(const QString &v);
    void changed_OrganisationFullName(const QString &v);
    void changed_OrganisationFullOgrn(const QString &v);
    void changed_OrganisationFullOid(const QString &v);
    void changed_Room(const QString &v);
    void changed_UserConsentRequested(bool v);
    void changed_IsCloseConfirmed(bool v);
    void changed_Tooltip(const QString &v);
    void changed_TooltipUserConsent(const QString &v);
    void changed_UserConsentVisible(bool v);
    void changed_SendEnabled(bool v);
    void notifyUser(const UserNotification &notification);

private:
    static void ValidateFeedbackText(ValidatableText::ValidationArgs *args);
    static void ValidateEmail(ValidatableText::ValidationArgs *args);
    void LoadSettings();
    void loadProfile();
    void loadTheme();
    void SaveSettings();
    static void ClearSettings();
    /// Whether the text is another than that of the draft.
    bool isChanged() const;
    void savePersonalData();
    ClientClaim makeClaim() const;
    MicrophoneInfo describeMicrophone() const;
    bool sendClaim();

    RecordingDeviceManager *m_recordingDevice;
    ThemeChooseViewModel m_themeChooser;
    RestAccessPoint m_restAccessPoint;
    ValidatableText m_feedbackText{this};
    ValidatableText m_email{this};
    ValidatableText m_fullName{this};
    QString m_regionCode;
    QString m_organisationFullName;
    QString m_organisationFullOgrn;
    QString m_organisationFullOid;
    QString m_room;
    bool m_isOpen = false;
    bool m_userConsentRequested = true;
    bool m_isCloseConfirmed = false;
    QString m_tooltip;
    QString m_tooltipUserConsent;
    bool m_userConsentVisible = false;
};
