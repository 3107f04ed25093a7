#pragma once

#include "connection/ConnectionStateInfo.h"

#include <QList>
#include <QObject>
#include <QString>
#include <QSystemTrayIcon>
#include <QTimer>

#include <memory>

class QAction;
class QMenu;

/// The program's constant presence: an icon that tells the state of the connection, a menu that
/// opens everything else, and the messages for the user.
///
/// Main thread, destroyed before the application object. A session may have its tray later than
/// the program, lose it or have none: the icon shows as soon as there is one.
class SystemTray : public QObject {
    Q_OBJECT

public:
    explicit SystemTray(QObject *parent);
    ~SystemTray() override;

    /// The icon itself; owned by this object.
    QSystemTrayIcon *trayIcon() const { return m_trayIcon.get(); }
    /// Shows a message at the icon for messageDuration. While the session has no tray it is kept,
    /// the last ten at most, and they are shown one after another as soon as there is one.
    void showMessage(const QString &title, const QString &text, QSystemTrayIcon::MessageIcon icon);

public slots:
    /// Shows the text as a message; nothing is written to it.
    void showError(QString &error);
    void onConnectionStateChanged(const ConnectionStateInfo &stateInfo);
    void onRecognitionParametersChanged(bool canEditAvocado);
    /// Shows the icon, and the messages that were kept; or tries again each second until the
    /// session has a tray.
    void DelayShow();

signals:
    void signalShowReplaces();
    void signalShowSettings();
    void signalShowFeedback();
    void signalShowAvocado();
    void signalQuit();
    void signalConnectRequest();
    void signalSelfTest();
    /// @param localHelpFile  path of an existing file
    void signalShowManual(QString localHelpFile);
    /// The session has had no tray for ten seconds, and may still get one.
    void missing();
    /// The icon shows.
    void found();

private:
    struct Message {
        QString title;
        QString text;
        QSystemTrayIcon::MessageIcon icon;
        bool isFailure; ///< of the connection
    };

    void CreateMenu();
    void ApplyMenuStyle(QMenu *menu) const;
    void addConnectEntries();
    void addSettingsEntries();
    void addOtherEntries();
    void showConnectEntry(bool isVisible);
    void showFailure(const QString &message);
    void showOrKeep(const Message &message);
    void show(const Message &message);
    void showNextKept();
    void dropKeptFailure();

    const int m_messageDuration = 4000; ///< milliseconds
    const int m_patience = 11;          ///< looks for a tray, one a second
    const int m_maximumKept = 10;       ///< messages
    const QString m_menuStyleSheet = QStringLiteral(":/qss/menuStyle.qss");
    const QString m_warningIconPath = QStringLiteral(":/replaceable/warning_icon.ico");
    const QString m_defaultIconPath = QStringLiteral(":/replaceable/default_icon.ico");
    const QString m_appName;
    std::unique_ptr<QMenu> m_menu;
    std::unique_ptr<QSystemTrayIcon> m_trayIcon;
    // The menu's entries; the menu owns them.
    QAction *m_connectAction = nullptr;
    QAction *m_connectSeparator = nullptr;
    QAction *m_settingsAction = nullptr;
    QAction *m_replacesAction = nullptr;
    QAction *m_feedbackAction = nullptr;
    QAction *m_avocadoAction = nullptr;
    QAction *m_quitAction = nullptr;
    QAction *m_selfTestAction = nullptr; ///< null unless the self test is enabled
    QAction *m_manualAction = nullptr;   ///< null unless the manual is there
    int m_waits = 0;
    /// The failure of the connection has been shown, and none has stood since.
    bool m_errorShown = false;
    /// What waits for the tray, or for the message before it to go; one failure at most.
    QList<Message> m_kept;
    QTimer m_keptDelay;
    QTimer m_delay;
};
