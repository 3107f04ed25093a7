#pragma once

#include <QString>

/// The operating system's user and host. One instance for the process, made on first use; the
/// look-ups of the host can block. Read-only and safe from any thread afterwards.
class UserInfo {
public:
    static const UserInfo &instance();

    QString hostName() const { return m_hostName; }
    QString userDomain() const { return m_userDomain; }
    QString environment() const { return m_environment; }
    /// The full name; empty where the system knows none.
    QString userName() const { return m_userName; }

private:
    UserInfo() = default;
    void Initialize();

    QString m_hostName;
    QString m_userDomain;
    QString m_environment;
    QString m_userName;
};
