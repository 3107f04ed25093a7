#pragma once

#include "connection/messages/UserNotification.h"

#include <QObject>

#include <memory>

class DesktopSession;
class QMessageBox;
class SystemTray;

/// Tells the user what the session or the machine lacks, where the program goes on without it.
///
/// Main thread; to be destroyed before the application object.
class SessionNotices : public QObject {
    Q_OBJECT

public:
    /// @param tray  not owned, outlives this object; that it finds none is told in a box
    SessionNotices(const DesktopSession &session, SystemTray *tray);
    ~SessionNotices() override;

    /// Warns of what cannot be reached in this session, if there is anything.
    void tellLimits();
    /// @param key  of the settings, that names the port
    void tellTakenPort(int port, const QString &key);

signals:
    /// To be shown whether there is a connection or not.
    void notifyUser(const UserNotification &notification);

private:
    static QString waylandLimits();
    void tellMissingTray();
    /// On the console as well: the tray may come late or never.
    void warn(const QString &title, const QString &message);

    const bool m_isWayland;
    SystemTray *m_tray;
    /// Null unless the session had no tray.
    std::unique_ptr<QMessageBox> m_trayNotice;
};
