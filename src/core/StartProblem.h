#pragma once

#include <QCoreApplication>
#include <QList>
#include <QQmlError>
#include <QString>

/// What keeps the program from starting, found and told to the user. Main thread.
class StartProblem {
    Q_DECLARE_TR_FUNCTIONS(StartProblem)

public:
    /// Exit status of a start that cannot succeed.
    static constexpr int Status = 1;

    /// Writes a text for the user to the standard error, in UTF-8: there need be no screen.
    static void tellConsole(const QString &text);
    /// Tells it there, in the log and in a box, and returns once the user has read that.
    /// @return Status
    static int tell(const QString &text);

    /// Names the folder that the program would have to write to and cannot; empty if there is none.
    static QString ofFolders();
    /// Why the interface could not be loaded.
    static QString ofInterface(const QList<QQmlError> &errors);
};
