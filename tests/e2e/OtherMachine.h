#pragma once

#include <QProcess>

#include <unistd.h>

/// Another machine on a cable to this one: a network namespace with a pair of virtual interfaces.
/// Needs the right to make them; both go with this object.
class OtherMachine {
public:
    OtherMachine() {
        m_isThere = run("ip", {"netns", "add", m_name}) &&
                    run("ip", {"link", "add", m_cable, "type", "veth", "peer", "name", "cable",
                               "netns", m_name}) &&
                    run("ip", {"address", "add", m_network + "1/30", "dev", m_cable}) &&
                    run("ip", {"link", "set", m_cable, "up"}) &&
                    there({"ip", "address", "add", m_network + "2/30", "dev", "cable"}) &&
                    there({"ip", "link", "set", "cable", "up"});
    }
    ~OtherMachine() { run("ip", {"netns", "delete", m_name}); }
    OtherMachine(const OtherMachine &) = delete;
    OtherMachine &operator=(const OtherMachine &) = delete;

    bool isThere() const { return m_isThere; }
    /// Whether somebody listens on this machine for the other one.
    bool reaches(int port) const {
        return there({"timeout", "10", "bash", "-c",
                      QString("exec 3<>/dev/tcp/%1/%2").arg(m_network + "1").arg(port)});
    }

private:
    static bool run(const QString &program, const QStringList &arguments) {
        QProcess process;
        process.start(program, arguments);
        return process.waitForFinished() && process.exitStatus() == QProcess::NormalExit &&
               process.exitCode() == 0;
    }
    bool there(const QStringList &command) const {
        return run("ip", QStringList{"netns", "exec", m_name} + command);
    }

    const QString m_name = QString("vellumar-%1").arg(getpid());
    const QString m_cable = QString("vm%1").arg(getpid());
    /// Of its own, should another run have left one behind.
    const QString m_network =
        QString("10.%1.%2.").arg(100 + getpid() / 256 % 100).arg(getpid() % 256);
    bool m_isThere = false;
};
