#pragma once

#include <QSettings>
#include <QString>

/// One open view of the settings file, positioned in one group.
///
/// Made on the stack where a value is needed and used by one thread only; objects of several
/// threads on the same file are coordinated by QSettings. Writes are flushed by sync() or by the
/// destructor.
class Settings : public QSettings {
    Q_OBJECT

public:
    /// Opens the file that the process-wide fields name.
    explicit Settings(const QString &group);
    ~Settings() override = default;

    /// True once a setting of this object has written a new value.
    bool changed = false;

    // Process-wide; to be set in main before any other thread exists.
    static void setOrganizationName(const QString &name) { OrganizationName = name; }
    static void setApplicationName(const QString &name) { ApplicationName = name; }
    static void setFileName(const QString &name) { FileName = name; }
    static void setIniCodec(const QByteArray &name) { IniCodec = name; }
    static void setDefaultFormat(QSettings::Format format) { DefaultFormat = format; }
    static void setScope(QSettings::Scope scope) { Scope = scope; }

private:
    static QString organization();
    static QString application();

    static QString OrganizationName;
    static QString ApplicationName;
    static QString FileName;
    static QByteArray IniCodec;
    static QSettings::Format DefaultFormat;
    static QSettings::Scope Scope;
};
