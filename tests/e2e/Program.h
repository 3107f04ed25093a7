#pragma once

#include "DeskProcess.h"

#include <QDir>
#include <QJsonValue>
#include <QString>

#include <memory>

class Stand;

/// The built program, run as a user runs it; its log is read from its standard output. Ended with
/// this object.
class Program {
public:
    /// @param executable  a copy to run, or what starts one; empty for the built one
    explicit Program(const QString &executable = QString(), const QStringList &arguments = {});
    /// Prints the end of the log if the test has failed.
    ~Program();
    Q_DISABLE_COPY_MOVE(Program)

    static QString builtExecutable();
    /// A new copy of the executable and what it needs beside it, in a folder of its own.
    static QDir copy();
    /// The same with a log as an installed program has it, that is without debug lines.
    /// @param file  what it writes to
    /// @return the copied executable
    static QString install(const QString &file);

    QString log();
    /// Waits for a piece of the log behind the one that the last wait found.
    bool waitForLog(const QString &text, int timeoutMs = 20000);
    /// Lets the next wait look at what comes from now on only.
    void forgetLog() { m_position = log().size(); }
    bool isRunning() const { return m_process.state() == QProcess::Running; }
    qint64 processId() const { return m_process.processId(); }

    /// Ends it by SIGTERM, as the session does.
    /// @return its exit code; -2 if it does not end in time, -3 if it crashed
    int terminate(int timeoutMs = 20000);
    /// Waits until it ends by itself; as terminate().
    int waitForExit(int timeoutMs = 20000);
    void kill();

private:
    DeskProcess m_process;
    QString m_log;
    int m_position = 0;
};

/// The gesture that starts and stops dictation as long as the settings name no other.
const QString doubleCtrl = "+Control_L -Control_L +Control_L -Control_L";

/// Lets the next program start as for the first time.
void clearSettings();
/// Lets the next program connect to this stand by itself, with a dictionary chosen.
void writeSettings(const Stand &stand);
/// Starts the program, or a copy of it, so that it connects to the stand.
/// @return once its last opening message is sent; null if it does not come
std::unique_ptr<Program> startProgram(Stand *stand, const QString &executable = {});
/// Waits for a request of a mode: null for dictation, undefined if none comes.
QJsonValue nextMode(Stand *stand, int timeoutMs = 20000);
