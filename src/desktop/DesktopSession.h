#pragma once

#include <QByteArray>
#include <QCoreApplication>
#include <QString>

/// The graphical session that the program is started in, looked at before the application object
/// is made: without a screen Qt would end the process by a crash.
class DesktopSession {
    Q_DECLARE_TR_FUNCTIONS(DesktopSession)

public:
    /// Under Wayland it also keeps Qt to X, which all of the program's work on the desk needs.
    DesktopSession(int argc, char **argv);

    /// Why no window can be shown, for the user; empty if nothing stands in the way.
    QString problem() const { return m_problem; }
    /// Windows of X are only some of those that the user sees, and keys in others go unseen.
    bool isWayland() const { return m_isWayland; }
    /// Takes back what was set for Qt, once the application object stands: the programs that the
    /// user's commands start are to find the environment as it was.
    void leaveEnvironment() const;

private:
    QString findProblem() const;

    const bool m_isWayland;
    const QByteArray m_formerPlatform; ///< null if none was set
    bool m_hasSetPlatform = false;
    QString m_problem;
};
